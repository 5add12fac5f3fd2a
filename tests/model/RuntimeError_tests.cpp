#include "model/RuntimeError.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace kalvrooms {

TEST(RuntimeError, CarriesTheNumberAndTheRuntimesGermanDescription) {
    EXPECT_EQ(RuntimeError(RuntimeError::Overflow).number(), 6);
    EXPECT_EQ(RuntimeError(RuntimeError::Overflow).description(), L"Überlauf");
    EXPECT_EQ(RuntimeError(RuntimeError::OutOfMemory).description(),
              L"Der Speicher reicht nicht aus");
    EXPECT_EQ(RuntimeError(RuntimeError::TypeMismatch).description(), L"Typen unverträglich");
    EXPECT_EQ(RuntimeError(RuntimeError::DivisionByZero).description(), L"Division durch Null");
}

TEST(RuntimeError, EveryKnownNumberHasADescriptionOfItsOwn) {
    std::set<std::wstring> descriptions;
    const long numbers[] = {5, 6, 7, 9, 11, 13, 52, 53, 57, 62, 70, 76, 91, 429, 457, 462, 32755};
    for (const long number : numbers) {
        const std::wstring description = RuntimeError(number).description();
        EXPECT_NE(description, L"Automatisierungsfehler") << number;
        EXPECT_TRUE(descriptions.insert(description).second) << number;
    }
}

TEST(RuntimeError, AnUnknownNumberIsAnAutomationError) {
    EXPECT_EQ(RuntimeError(440).description(), L"Automatisierungsfehler");
    EXPECT_EQ(RuntimeError(-2147352567).description(), L"Automatisierungsfehler");
    EXPECT_EQ(RuntimeError(-2147352567).number(), -2147352567);
    EXPECT_EQ(RuntimeError(0).description(), L"Automatisierungsfehler");
}

TEST(RuntimeError, KeepsTheDescriptionThatAServerDelivered) {
    const RuntimeError error(440, L"Teilbild ist gesperrt");
    EXPECT_EQ(error.number(), 440);
    EXPECT_EQ(error.description(), L"Teilbild ist gesperrt");
    EXPECT_FALSE(error.hasOwnDescription());
}

TEST(RuntimeError, AnEmptyDescriptionGetsTheRuntimesOwn) {
    EXPECT_EQ(RuntimeError(13, L"").description(), L"Typen unverträglich");
    EXPECT_TRUE(RuntimeError(13, L"").hasOwnDescription());
}

TEST(RuntimeError, RendersAsPlainAsciiForTools) {
    EXPECT_STREQ(RuntimeError(6).what(), "runtime error 6: Ueberlauf");
    EXPECT_STREQ(RuntimeError(1000, L"Größe ÄÖÜ äöü €").what(),
                 "runtime error 1000: Groesse AeOeUe aeoeue ?");
}

} // namespace kalvrooms
