#pragma once
// The main window as the file layer knows it. What files have no business with is told to the one
// who made it.

#include <cstdint>
#include <memory>
#include <string>

#include "app/ProgramContext.h"

namespace kalvrooms {

class FileLayerContext : public ProgramContext {
  public:
    void SetRegKey(const std::wstring&) override { notAsked(); }
    void SetLang(const std::wstring&) override { notAsked(); }
    void GetReport(std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&,
                   bool&) const override {
        notAsked();
    }
    void SetWithoutReport() override { notAsked(); }
    void SetWithReport() override { notAsked(); }
    void GetPlace(double&, double&, bool&, std::int32_t&, std::int32_t&, bool&) const override {
        notAsked();
    }
    void SetPlace(double, double, bool, std::int32_t, std::int32_t) override { notAsked(); }
    void WriteListToFile() override { notAsked(); }
    void ReadListFromFile() override { notAsked(); }
    std::shared_ptr<clsRoom> GetCurrentRoom() const override {
        notAsked();
        return nullptr;
    }
    void AddCurrentRoomsToListOfFloors(std::int32_t) override { notAsked(); }
    void EnableInput(bool) override { notAsked(); }
    std::wstring HelpFile() const override {
        notAsked();
        return {};
    }
    void HelpFile(const std::wstring&) override { notAsked(); }

  protected:
    virtual void notAsked() const = 0;
};

} // namespace kalvrooms
