#include "model/clsGeometry.h"

#include <cmath>

#include "support/UserLocaleForTest.h"

namespace kalvrooms {

namespace {

clsGeometry geometry(const std::wstring& type, const std::wstring& value, double area) {
    clsGeometry result;
    result.SetTypeAndValue(type, value);
    result.Area(area);
    return result;
}

class GeometryWithDecimalComma : public testing::Test {
  protected:
    UserLocaleForTest locale_{NumberLocale::German()};
};

} // namespace

TEST(clsGeometry, StoresTypeAndValueUnchanged) {
    EXPECT_EQ(CalculationByDx, L"CalculationByDx"); // as in the files
    EXPECT_EQ(CalculationByDy, L"CalculationByDy");
    EXPECT_EQ(CalculationByRatio, L"CalculationByRatio");
    EXPECT_EQ(CalculationByFile, L"CalculationByFile");
    clsGeometry g;
    g.SetTypeAndValue(L"  any word ", L" 1 ,x ");
    std::wstring type;
    std::wstring value;
    g.GetTypeAndValue(type, value);
    EXPECT_EQ(type, L"  any word ");
    EXPECT_EQ(value, L" 1 ,x ");
    EXPECT_EQ(g.CalculationType(), L"  any word ");
    EXPECT_EQ(g.CalculationValue(), L" 1 ,x ");
}

TEST(clsGeometry, ANewRoomsGeometryIsASquareOfFourByFour) {
    clsGeometry g = geometry(CalculationByRatio, L" 1", 16.0);
    EXPECT_EQ(g.Info(), L"quadratisch");
    EXPECT_EQ(g.dx(), 4.0);
    EXPECT_EQ(g.dy(), 4.0);
}

TEST(clsGeometry, ARatioSplitsTheArea) {
    clsGeometry g = geometry(CalculationByRatio, L"2", 50.0);
    EXPECT_EQ(g.dx(), 10.0);
    EXPECT_EQ(g.dy(), 5.0);
    EXPECT_EQ(g.Info(), L"rechteckig");
}

TEST(clsGeometry, AGivenSideLeavesTheOtherToTheArea) {
    clsGeometry x = geometry(CalculationByDx, L"5", 20.0);
    EXPECT_EQ(x.dx(), 5.0);
    EXPECT_EQ(x.dy(), 4.0);
    clsGeometry y = geometry(CalculationByDy, L"5", 20.0);
    EXPECT_EQ(y.dx(), 4.0);
    EXPECT_EQ(y.dy(), 5.0);
}

TEST(clsGeometry, ASquareIsASquareWithinAThousandthOfASquareMetre) {
    for (const std::wstring& type : {CalculationByDx, CalculationByDy}) {
        EXPECT_EQ(geometry(type, L"5", 25.0).Info(), L"quadratisch");
        EXPECT_EQ(geometry(type, L"5", 25.00099).Info(), L"quadratisch");
        EXPECT_EQ(geometry(type, L"5", 24.99901).Info(), L"quadratisch");
        EXPECT_EQ(geometry(type, L"5", 25.00101).Info(), L"rechteckig");
        EXPECT_EQ(geometry(type, L"5", 24.99899).Info(), L"rechteckig");
        EXPECT_EQ(geometry(type, L"-5", 25.0).Info(), L"quadratisch");
    }
}

TEST(clsGeometry, OnlyARatioOfExactlyOneIsASquare) {
    for (const wchar_t* ratio : {L"1.000000000001", L"0.999999999999"})
        EXPECT_EQ(geometry(CalculationByRatio, ratio, 25.0).Info(), L"rechteckig") << ratio;
}

TEST(clsGeometry, WithoutAreaTheDerivedSideIsZero) {
    clsGeometry x = geometry(CalculationByDx, L"5", 0.0);
    EXPECT_EQ(x.dx(), 5.0);
    EXPECT_EQ(x.dy(), 0.0);
    EXPECT_EQ(x.Info(), L"rechteckig");
    clsGeometry y = geometry(CalculationByDy, L"5", 0.0);
    EXPECT_EQ(y.dx(), 0.0);
    EXPECT_EQ(y.dy(), 5.0);
    clsGeometry ratio = geometry(CalculationByRatio, L"2", 0.0);
    EXPECT_EQ(ratio.dx(), 0.0);
    EXPECT_EQ(ratio.dy(), 0.0);
    clsGeometry zero = geometry(CalculationByDx, L"0", 0.0);
    EXPECT_EQ(zero.dx(), 0.0);
    EXPECT_EQ(zero.dy(), 0.0);
    EXPECT_EQ(zero.Info(), L"quadratisch");
}

TEST(clsGeometry, ReadingASideTurnsAValueWithoutNumberIntoARatioForGood) {
    for (const std::wstring& type : {CalculationByDx, CalculationByDy, std::wstring(L"whatever")}) {
        clsGeometry g = geometry(type, L"abc", 25.0);
        EXPECT_EQ(g.dx(), 5.0);
        EXPECT_EQ(g.CalculationType(), CalculationByRatio);
        EXPECT_EQ(g.CalculationValue(), L"abc");
        EXPECT_EQ(g.dy(), 5.0);
        EXPECT_EQ(g.Info(), L"rechteckig");
    }
    clsGeometry empty = geometry(CalculationByDy, L"", 25.0);
    EXPECT_EQ(empty.dy(), 5.0);
    EXPECT_EQ(empty.CalculationType(), CalculationByRatio);
}

TEST(clsGeometry, InfoNeverChangesTheType) {
    const clsGeometry g = geometry(CalculationByDx, L"abc", 25.0);
    EXPECT_EQ(g.Info(), L"rechteckig");
    EXPECT_EQ(g.CalculationType(), CalculationByDx);
}

TEST(clsGeometry, AValueWithoutNumberCountsAsZeroForInfo) {
    EXPECT_EQ(geometry(CalculationByDx, L"abc", 0.0).Info(), L"quadratisch");
    EXPECT_EQ(geometry(CalculationByDy, L"abc", 1.0).Info(), L"rechteckig");
    EXPECT_EQ(geometry(CalculationByRatio, L"abc", 1.0).Info(), L"rechteckig");
}

TEST(clsGeometry, APolygonHasNoSidesAndKeepsItsType) {
    for (const wchar_t* value : {L"C:\\Punkte\\a.pnt", L"5", L""}) {
        clsGeometry g = geometry(CalculationByFile, value, 25.0);
        EXPECT_EQ(g.dx(), 0.0);
        EXPECT_EQ(g.dy(), 0.0);
        EXPECT_EQ(g.CalculationType(), CalculationByFile);
        EXPECT_EQ(g.Info(), L"polygonal");
        EXPECT_EQ(g.FileName(), value);
    }
}

TEST(clsGeometry, AnUnknownTypeWordHasNoSidesAndNoShape) {
    clsGeometry g = geometry(L"calculationbydx", L"5", 25.0); // letter case counts
    EXPECT_EQ(g.dx(), 0.0);
    EXPECT_EQ(g.dy(), 0.0);
    EXPECT_EQ(g.Info(), L"");
    EXPECT_EQ(g.CalculationType(), L"calculationbydx");
    EXPECT_EQ(geometry(L"", L"abc", 25.0).Info(), L" ");
    EXPECT_EQ(geometry(L"CalculationByFILE", L"", 25.0).Info(), L" ");
}

TEST(clsGeometry, OnlyAPolygonHasAFileName) {
    for (const std::wstring& type :
         {CalculationByDx, CalculationByDy, CalculationByRatio, std::wstring()})
        EXPECT_EQ(geometry(type, L"C:\\a.pnt", 1.0).FileName(), L" ");
}

TEST(clsGeometry, ASideOfZeroIsADivisionByZero) {
    EXPECT_EQ(errorOf([] { geometry(CalculationByDx, L"0", 16.0).dy(); }),
              RuntimeError::DivisionByZero);
    EXPECT_EQ(errorOf([] { geometry(CalculationByDy, L"0", 16.0).dx(); }),
              RuntimeError::DivisionByZero);
    EXPECT_EQ(errorOf([] { geometry(CalculationByRatio, L"0", 16.0).dy(); }),
              RuntimeError::DivisionByZero);
    EXPECT_EQ(geometry(CalculationByDx, L"0", 16.0).dx(), 0.0);
    EXPECT_EQ(geometry(CalculationByRatio, L"0", 16.0).dx(), 0.0);
}

TEST(clsGeometry, ANegativeProductHasNoRoot) {
    EXPECT_EQ(errorOf([] { geometry(CalculationByRatio, L"-2", 16.0).dx(); }),
              RuntimeError::InvalidProcedureCall);
    EXPECT_EQ(errorOf([] { geometry(CalculationByRatio, L"-2", 16.0).dy(); }),
              RuntimeError::InvalidProcedureCall);
    EXPECT_EQ(errorOf([] { geometry(CalculationByRatio, L"1", -16.0).dx(); }),
              RuntimeError::InvalidProcedureCall);
    EXPECT_EQ(geometry(CalculationByRatio, L"-1", -16.0).dx(), 4.0);
    EXPECT_EQ(geometry(CalculationByRatio, L"-1", -16.0).dy(), 4.0);
}

TEST(clsGeometry, ANegativeAreaIsSplitAsAnyOther) {
    EXPECT_EQ(geometry(CalculationByDx, L"5", -20.0).dy(), -4.0);
    EXPECT_EQ(geometry(CalculationByDy, L"5", -20.0).dx(), -4.0);
}

TEST(clsGeometry, NegativeSidesAreTakenAsTheyAre) {
    clsGeometry g = geometry(CalculationByDx, L"-5", 20.0);
    EXPECT_EQ(g.dx(), -5.0);
    EXPECT_EQ(g.dy(), -4.0);
}

TEST(clsGeometry, SidesBeyondAllNumbersAreAnOverflow) {
    EXPECT_EQ(errorOf([] { geometry(CalculationByRatio, L"1e308", 1e10).dx(); }),
              RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { geometry(CalculationByRatio, L"1e-308", 1e10).dy(); }),
              RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { geometry(CalculationByDx, L"1e-300", 1e10).dy(); }),
              RuntimeError::Overflow);
    EXPECT_EQ(geometry(CalculationByDx, L"1e300", 1.0).Info(), L"rechteckig");
}

TEST(clsGeometry, NothingIsRounded) {
    clsGeometry g = geometry(CalculationByDx, L"3", 10.0);
    EXPECT_EQ(g.dy(), 10.0 / 3.0);
    clsGeometry ratio = geometry(CalculationByRatio, L"3", 10.0);
    EXPECT_EQ(ratio.dx(), std::sqrt(3.0 * 10.0));
    EXPECT_EQ(ratio.dy(), std::sqrt((1.0 / 3.0) * 10.0));
}

TEST_F(GeometryWithDecimalComma, TheValueIsReadUnderTheUsersLocale) {
    EXPECT_EQ(geometry(CalculationByDx, L"2,5", 10.0).dx(), 2.5);
    EXPECT_EQ(geometry(CalculationByDx, L"2.5", 10.0).dx(), 25.0);
    EXPECT_EQ(geometry(CalculationByRatio, L"1,00", 16.0).Info(), L"quadratisch");
}

TEST(clsGeometry, TheValueFollowsTheDecimalPointToo) {
    const UserLocaleForTest locale(NumberLocale::Point());
    EXPECT_EQ(geometry(CalculationByDx, L"2.5", 10.0).dx(), 2.5);
    EXPECT_EQ(geometry(CalculationByDx, L"2,5", 10.0).dx(), 25.0);
}

TEST(clsGeometry, SetAspectRatioPrefersAPositiveDxAndMakesEqualSidesASquare) {
    struct Case {
        const wchar_t* dx;
        const wchar_t* dy;
        std::wstring type;
        const wchar_t* value;
    };
    const Case cases[] = {{L"4", L"4", CalculationByRatio, L"1"},
                          {L"0", L"0", CalculationByRatio, L"1"},
                          {L"", L"", CalculationByRatio, L"1"},
                          {L"abc", L"", CalculationByRatio, L"1"},
                          {L"4", L" 4.0 ", CalculationByRatio, L"1"},
                          {L"-3", L"-3", CalculationByRatio, L"1"},
                          {L"-2", L"0", CalculationByRatio, L"1"},
                          {L"-2", L"-3", CalculationByRatio, L"1"},
                          {L" 4 ", L"7", CalculationByDx, L" 4 "},
                          {L"4", L"-7", CalculationByDx, L"4"},
                          {L"4", L"abc", CalculationByDx, L"4"},
                          {L"4", L"4.000000000001", CalculationByDx, L"4"},
                          {L"0.001", L"7", CalculationByDx, L"0.001"},
                          {L"0", L"7", CalculationByDy, L"7"},
                          {L"-1", L" 7 ", CalculationByDy, L" 7 "},
                          {L"-1", L"0.001", CalculationByDy, L"0.001"}};
    clsGeometry g;
    for (const auto& [dx, dy, type, value] : cases) {
        g.SetAspectRatio(dx, dy);
        EXPECT_EQ(g.CalculationType(), type) << dx << " " << dy;
        EXPECT_EQ(g.CalculationValue(), value) << dx << " " << dy;
    }
}

TEST(clsGeometry, DefaultValuesAreTheComputedSides) {
    clsGeometry g = geometry(CalculationByRatio, L"2", 50.0);
    double dx = -1.0;
    double dy = -1.0;
    g.getDefaultValues(dx, dy);
    EXPECT_EQ(dx, 10.0);
    EXPECT_EQ(dy, 5.0);
}

TEST(clsGeometry, DefaultValuesGiveDxBeforeDyIsAskedFor) {
    clsGeometry g = geometry(CalculationByDx, L"0", 16.0);
    double dx = -1.0;
    double dy = -1.0;
    EXPECT_EQ(errorOf([&] { g.getDefaultValues(dx, dy); }), RuntimeError::DivisionByZero);
    EXPECT_EQ(dx, 0.0);
    EXPECT_EQ(dy, -1.0);
}

TEST(clsGeometry, DefaultValuesHaveTheSideEffectOfReadingTheSides) {
    clsGeometry g = geometry(CalculationByDx, L"abc", 16.0);
    double dx = 0.0;
    double dy = 0.0;
    g.getDefaultValues(dx, dy);
    EXPECT_EQ(dx, 4.0);
    EXPECT_EQ(dy, 4.0);
    EXPECT_EQ(g.CalculationType(), CalculationByRatio);
}

TEST(clsGeometry, DefaultSetYieldsASquareOfTheArea) {
    clsGeometry g = geometry(CalculationByDx, L"abc", 16.0);
    g.Default(true);
    double dx = 0.0;
    double dy = 0.0;
    g.getDefaultValues(dx, dy);
    EXPECT_EQ(dx, 4.0);
    EXPECT_EQ(dy, 4.0);
    EXPECT_EQ(g.CalculationType(), CalculationByDx); // the sides were not read
}

TEST(clsGeometry, DefaultSetWithoutAreaLeavesDyToTheCaller) {
    for (const double area : {0.0, -4.0}) {
        clsGeometry g = geometry(CalculationByRatio, L"2", area);
        g.Default(true);
        double dx = 0.0;
        double dy = 7.5;
        g.getDefaultValues(dx, dy);
        EXPECT_EQ(dx, 1.0);
        EXPECT_EQ(dy, 7.5);
    }
}

TEST(clsGeometry, DefaultCanBeTakenBack) {
    clsGeometry g = geometry(CalculationByRatio, L"2", 50.0);
    g.Default(true);
    g.Default(false);
    double dx = 0.0;
    double dy = 0.0;
    g.getDefaultValues(dx, dy);
    EXPECT_EQ(dx, 10.0);
    EXPECT_EQ(dy, 5.0);
}

} // namespace kalvrooms
