#include "standin/spreadsheet/win32/SheetClassObject.h"

#include "standin/kalvero/HostError.h"
#include "standin/kalvero/win32/ClassFactory.h"
#include "standin/spreadsheet/win32/SheetClass.h"
#include "standin/spreadsheet/win32/SheetObjects.h"

namespace kalvrooms::practice::spreadsheet {

SheetClassObject::SheetClassObject(SheetProcess& process, bool inUsersHands) {
    if (inUsersHands)
        return;
    const auto factory = ComPtr<ClassFactory>::Attach(
        new ClassFactory([&process] { return new ApplicationObject(process); },
                         [&process](bool stay) { stay ? process.Created() : process.Gone(); }));
    if (FAILED(CoRegisterClassObject(ApplicationClassId, factory.get(), CLSCTX_LOCAL_SERVER,
                                     REGCLS_SINGLEUSE, &entry_)))
        throw HostError(L"The class cannot be offered.");
}

SheetClassObject::~SheetClassObject() {
    if (entry_ != 0)
        CoRevokeClassObject(entry_);
}

} // namespace kalvrooms::practice::spreadsheet
