#include "practice/spreadsheet/SheetClassObject.h"

#include "drawing/HostError.h"
#include "practice/server/ClassFactory.h"
#include "practice/spreadsheet/SheetClass.h"
#include "practice/spreadsheet/SheetObjects.h"

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
