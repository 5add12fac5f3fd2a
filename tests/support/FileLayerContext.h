#pragma once
// The main window as the file layer knows it: what files have no business with is a failure.

#include <cstdint>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "app/ProgramContext.h"

namespace kalvrooms {

class FileLayerContext : public ProgramContext {
  public:
    void SetRegKey(const std::wstring&) override { unexpected(); }
    void SetLang(const std::wstring&) override { unexpected(); }
    void GetReport(std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&,
                   bool&) const override {
        unexpected();
    }
    void SetWithoutReport() override { unexpected(); }
    void SetWithReport() override { unexpected(); }
    void GetPlace(double&, double&, bool&, std::int32_t&, std::int32_t&, bool&) const override {
        unexpected();
    }
    void SetPlace(double, double, bool, std::int32_t, std::int32_t) override { unexpected(); }
    void WriteListToFile() override { unexpected(); }
    void ReadListFromFile() override { unexpected(); }
    std::shared_ptr<clsRoom> GetCurrentRoom() const override {
        unexpected();
        return nullptr;
    }
    void AddCurrentRoomsToListOfFloors(std::int32_t) override { unexpected(); }
    void EnableInput(bool) override { unexpected(); }
    std::wstring HelpFile() const override {
        unexpected();
        return {};
    }
    void HelpFile(const std::wstring&) override { unexpected(); }

  private:
    static void unexpected() { ADD_FAILURE() << "the file layer has no business with this"; }
};

} // namespace kalvrooms
