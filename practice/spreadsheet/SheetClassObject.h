#pragma once
// Offers the instance to the client for whom the system started it. To that one only: the next
// client gets a process of its own.

#include "practice/spreadsheet/SheetProcess.h"

namespace kalvrooms::practice::spreadsheet {

class SheetClassObject {
  public:
    // An instance in its user's hands is found in the list of running objects and offers nothing
    // here. Raises a HostError when the system does not take the class.
    SheetClassObject(SheetProcess& process, bool inUsersHands);
    SheetClassObject(const SheetClassObject&) = delete;
    SheetClassObject& operator=(const SheetClassObject&) = delete;
    ~SheetClassObject();

  private:
    DWORD entry_ = 0;
};

} // namespace kalvrooms::practice::spreadsheet
