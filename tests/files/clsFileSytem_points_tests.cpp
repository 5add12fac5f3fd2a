#include "files/clsFileSytem.h"

#include "FileContext.h"

namespace kalvrooms {
namespace {

using practice::FaultMode;

PointArray pointsOf(std::initializer_list<std::pair<double, double>> values) {
    PointArray points;
    for (const auto& [x, y] : values)
        points.Add(x, y);
    return points;
}

class PointFile : public FileTestUnderBothLocales {
  protected:
    bool read(const std::string& bytes) {
        return clsFileSytem(context).ReadPointsFromGeometryFile(folder.Write(L"p.txt", bytes),
                                                                points);
    }
    std::string written(const PointArray& outline) {
        clsFileSytem(context).WritePointsToGeometryFile(folder.Path(L"p.txt"), outline);
        return folder.Read(L"p.txt");
    }
    void expectPoint(std::int32_t index, double x, double y) {
        EXPECT_EQ(points.X(index), x) << index;
        EXPECT_EQ(points.Y(index), y) << index;
    }

    PointArray points;
};
INSTANTIATE_TEST_SUITE_P(Locales, PointFile,
                         testing::Values(NumberLocale::German(), NumberLocale::Point(),
                                         frenchLocale(), swissLocale()));

TEST_P(PointFile, IsWrittenWithoutTheLastPoint) {
    EXPECT_EQ(written(pointsOf({{0, 0}, {4, 0}, {4, 3}, {0, 3}, {0, 0}})),
              "4\r\n0\t0\r\n4\t0\r\n4\t3\r\n0\t3\r\nend\r\n");
}

TEST_P(PointFile, HasPointNumbersUnderEveryLocale) {
    EXPECT_EQ(written(pointsOf({{12.5, -3}, {0.00001, 1e20}, {1.0 / 3, -0.5}, {0, 0}})),
              "3\r\n12.5\t-3\r\n1E-05\t1E+20\r\n0.333333333333333\t-0.5\r\nend\r\n");
}

TEST_P(PointFile, OfOnePointHoldsNone) {
    EXPECT_EQ(written(pointsOf({{1, 2}})), "0\r\nend\r\n");
    EXPECT_FALSE(clsFileSytem(context).ReadPointsFromGeometryFile(folder.Path(L"p.txt"), points));
    EXPECT_FALSE(points.IsSet());
}

TEST_P(PointFile, OfUnsetPointsIsAnErrorAndNoFile) {
    EXPECT_EQ(errorOf([&] { written(PointArray()); }), RuntimeError::TypeMismatch);
    EXPECT_FALSE(folder.Has(L"p.txt"));
}

TEST_P(PointFile, TakesTheLargestBoundOf16Bits) {
    PointArray outline;
    outline.Dimension(32'768);
    const std::string bytes = written(outline);
    EXPECT_TRUE(bytes.starts_with("32767\r\n0\t0\r\n"));
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), 32'769);
}

TEST_P(PointFile, BeyondThatOverflowsAndLeavesTheOldFile) {
    folder.Write(L"p.txt", "old");
    PointArray outline;
    outline.Dimension(32'769);
    EXPECT_EQ(errorOf([&] { written(outline); }), RuntimeError::Overflow);
    EXPECT_EQ(folder.Read(L"p.txt"), "old");
}

TEST_P(PointFile, FailuresOfWritingGoToTheCaller) {
    const PointArray outline = pointsOf({{0, 0}, {1, 1}});
    folder.MakeFolder(L"Ordner");
    const auto errorFor = [&](const std::wstring& path) {
        return errorOf([&] { clsFileSytem(context).WritePointsToGeometryFile(path, outline); });
    };
    EXPECT_EQ(errorFor(folder.Path(L"Ordner")), RuntimeError::PermissionDenied);
    EXPECT_EQ(errorFor(folder.Path(L"fehlt") + L"/p.txt"), RuntimeError::PathNotFound);
    EXPECT_EQ(errorFor(L""), RuntimeError::InvalidProcedureCall);
#ifndef _WIN32
    EXPECT_EQ(errorFor(L"/dev/full"), RuntimeError::DeviceError);
#endif
}

TEST_P(PointFile, IsWrittenAsTextUnderAWorkbooksName) {
    clsFileSytem(context).WritePointsToGeometryFile(folder.Path(L"p.xls"),
                                                    pointsOf({{1, 2}, {3, 4}}));
    EXPECT_EQ(folder.Read(L"p.xls"), "1\r\n1\t2\r\nend\r\n");
    EXPECT_EQ(context.Spreadsheets.Calls(), 0);
}

TEST_P(PointFile, IsReadLineByLine) {
    using Points = std::vector<std::pair<double, double>>;
    struct Case {
        std::string bytes;
        bool complete;
        Points read;
    };
    const Case cases[] = {
        {"2\r\n7,25\t1.5\r\n-2.5\t-2,5\r\nend\r\n", true, {{7.25, 1.5}, {-2.5, -2.5}}},
        // The sign of a whole part of zero is lost.
        {"1\r\n-0.5\t-0,25\r\n", true, {{0.5, 0.25}}},
        // Neither the end line nor the last line end are needed, and ends may be LF.
        {"2\r\n1\t2\r\n3\t4", true, {{1, 2}, {3, 4}}},
        {"2\n1\t2\n3\t4\nend\n", true, {{1, 2}, {3, 4}}},
        // As far as the count goes, which may have blanks around it.
        {"1\r\n1\t2\r\n3\t4\r\nrubbish\r\n", true, {{1, 2}}},
        {"  2 \r\n1\t2\r\n3\t4\r\n", true, {{1, 2}, {3, 4}}},
        // A line without tab, and texts that are no numbers, are zero.
        {"3\r\n1\t2\r\n3 4\r\n5\t6\r\nend\r\n", true, {{1, 2}, {0, 0}, {5, 6}}},
        {"3\r\na\t2\r\n\t\r\n5\t6\t7\r\n", true, {{0, 2}, {0, 0}, {5, 0}}},
        {"3\r\n1\t2\r\n3\t4\r\n", false, {{1, 2}, {3, 4}, {0, 0}}},
        {"2\r\n1\t2\r\n7\t" + localBytes(".5") + "\r\n", false, {{1, 2}, {7, 0}}}};
    for (const auto& [bytes, complete, expected] : cases) {
        points = PointArray();
        EXPECT_EQ(read(bytes), complete) << bytes;
        Points seen;
        for (std::int32_t i = 0; i < points.Count(); ++i)
            seen.emplace_back(points.X(i), points.Y(i));
        EXPECT_EQ(seen, expected) << bytes;
    }
}

TEST_P(PointFile, WithoutACountOfPointsIsNotRead) {
    for (const char* count : {"", "0", "-1", "x", "end", "2147483648", "99999999999", "1e308"}) {
        points = PointArray();
        EXPECT_FALSE(read(std::string(count) + "\r\n1\t2\r\n3\t4\r\n")) << count;
        EXPECT_FALSE(points.IsSet()) << count;
    }
    EXPECT_FALSE(read(""));
    EXPECT_FALSE(read(localBytes("2.5") + "\r\n1\t2\r\n3\t4\r\n5\t6\r\n"));
    EXPECT_FALSE(points.IsSet());
}

TEST_P(PointFile, ThatPromisesMorePointsThanAnyMemoryHoldsIsNotRead) {
    EXPECT_FALSE(read("2000000000\r\n1\t2\r\n"));
    EXPECT_FALSE(read("100000000\r\n1\t2\r\n"));
    EXPECT_EQ(points.Count(), 100'000'000);
    expectPoint(0, 1, 2);
}

TEST_P(PointFile, ThatIsMissingOrAFolderIsNotRead) {
    folder.MakeFolder(L"Ordner.txt");
    for (const std::wstring& path :
         {folder.Path(L"fehlt.txt"), folder.Path(L"fehlt") + L"/p.txt", folder.Path(L"Ordner.txt"),
          std::wstring(), std::wstring(L" ")})
        EXPECT_FALSE(clsFileSytem(context).ReadPointsFromGeometryFile(path, points));
    EXPECT_FALSE(points.IsSet());
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
}

TEST_P(PointFile, CutOffAnywhereIsReadOnlyIfNoPointIsMissing) {
    const std::string whole = "3\r\n1.5\t2.5\r\n3.5\t4.5\r\n5.5\t6.5\r\nend\r\n";
    // Once the last counted line has begun, a cut in it cannot be told from a line without tab.
    const std::size_t lastLine = whole.find("5.5\t6.5");
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        points = PointArray();
        const bool complete = read(whole.substr(0, length));
        EXPECT_EQ(complete, length > lastLine) << length;
        if (length >= lastLine)
            expectPoint(1, 3.5, 4.5);
    }
}

TEST_P(PointFile, OfRandomBytesDoesNoHarm) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int round = 0; round < 50; ++round) {
        std::string bytes = round % 2 == 0 ? "" : "50\r\n";
        for (int i = 0; i < 400; ++i)
            bytes += static_cast<char>(byte(random));
        points = PointArray();
        const bool complete = read(bytes);
        EXPECT_TRUE(!complete || points.IsSet());
    }
}

TEST_P(PointFile, RoundTripsKeepFifteenDigits) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> coordinate(1.0, 1e6);
    PointArray outline;
    for (int i = 0; i < 500; ++i)
        outline.Add(coordinate(random), -coordinate(random));
    outline.Add(outline.X(0), outline.Y(0));
    ASSERT_TRUE(read(written(outline)));
    ASSERT_EQ(points.Count(), 500);
    for (int i = 0; i < 500; ++i) {
        EXPECT_NEAR(points.X(i), outline.X(i), 1e-8);
        EXPECT_NEAR(points.Y(i), outline.Y(i), 1e-8);
    }
}

// ------------------------------------------------------------------------- workbooks

class PointWorkbook : public FileTestUnderBothLocales {
  protected:
    void put(int row, int column, CellValue value) {
        context.SheetOf(L"p.xls").Set(row, column, {std::move(value)});
    }
    bool read() { return clsFileSytem(context).ReadPointsFromGeometryFile(L"p.xls", points); }
    void expectClosed() {
        EXPECT_EQ(context.Spreadsheets.LeftBehind(), 0);
        EXPECT_EQ(context.Spreadsheets.OpenObjects(), 0);
        EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
    }
    void expectPoint(std::int32_t index, double x, double y) {
        EXPECT_EQ(points.X(index), x) << index;
        EXPECT_EQ(points.Y(index), y) << index;
    }
    PointArray points;
};
INSTANTIATE_TEST_SUITE_P(Locales, PointWorkbook,
                         testing::Values(NumberLocale::German(), NumberLocale::Point()));

TEST_P(PointWorkbook, IsReadFromTheFirstTwoColumns) {
    put(1, 1, 3.0);
    put(2, 1, 1.5);
    put(2, 2, -2.25);
    put(3, 1, 3.0);
    put(3, 2, 4.0);
    put(4, 1, local(L"5.5"));
    put(4, 2, L"6");
    put(5, 1, 99.0);
    ASSERT_TRUE(read());
    ASSERT_EQ(points.Count(), 3);
    expectPoint(0, 1.5, -2.25);
    expectPoint(1, 3, 4);
    expectPoint(2, 5.5, 6);
    expectClosed();
}

TEST_P(PointWorkbook, RepeatsTheFirstPointForRowsThatAreNotNumeric) {
    put(1, 1, 4.0);
    put(2, 1, 7.0);
    put(2, 2, 8.0);
    put(3, 1, L"x");
    put(3, 2, 4.0);
    put(4, 1, 3.0);
    put(5, 1, CellError{L"#N/A"});
    put(5, 2, true);
    ASSERT_TRUE(read());
    for (int i = 0; i < 4; ++i)
        expectPoint(i, 7, 8);
}

TEST_P(PointWorkbook, RepeatsZeroWhenTheFirstRowIsNotNumeric) {
    put(1, 1, 3.0);
    put(2, 2, 8.0);
    put(3, 1, 1.0);
    put(3, 2, 2.0);
    ASSERT_TRUE(read());
    expectPoint(0, 0, 0);
    expectPoint(1, 1, 2);
    expectPoint(2, 0, 0);
}

TEST_P(PointWorkbook, WithoutACountIsReadAndLeavesThePointsAsTheyWere) {
    put(2, 1, 1.0);
    put(2, 2, 2.0);
    EXPECT_TRUE(read());
    EXPECT_FALSE(points.IsSet());
    expectClosed();

    points.Add(1.0, 2.0);
    for (const CellValue& count : {CellValue(L"x"), CellValue(true), CellValue(L"")}) {
        put(1, 1, count);
        EXPECT_TRUE(read());
        EXPECT_EQ(points.Count(), 1);
        expectClosed();
    }
}

TEST_P(PointWorkbook, RoundsItsCount) {
    put(1, 1, 2.5);
    put(2, 1, 1.0);
    put(2, 2, 2.0);
    ASSERT_TRUE(read());
    EXPECT_EQ(points.Count(), 2);
    put(1, 1, L" 3 ");
    ASSERT_TRUE(read());
    EXPECT_EQ(points.Count(), 3);
}

TEST_P(PointWorkbook, WithAnImpossibleCountIsNotRead) {
    for (const double count : {0.0, -1.0, 3e9, 2e9, 100'000.0}) {
        put(1, 1, count);
        EXPECT_FALSE(read()) << count;
    }
}

TEST_P(PointWorkbook, IsReadWholeHoweverManyPointsItHolds) {
    constexpr int count = 2047; // to the last row of the sheet
    context.SheetOf(L"p.xls").rows = count + 1;
    put(1, 1, static_cast<double>(count));
    for (int i = 0; i < count; ++i) {
        put(i + 2, 1, i * 0.5);
        put(i + 2, 2, i * 0.25);
    }
    ASSERT_TRUE(read());
    ASSERT_EQ(points.Count(), count);
    for (int i = 0; i < count; ++i)
        expectPoint(i, i * 0.5, i * 0.25);
    EXPECT_LE(context.Spreadsheets.Calls(), 10 + count / 512 + 1);
}

TEST_P(PointWorkbook, WithoutTheApplicationIsNotRead) {
    context.Spreadsheets.Installed = false;
    EXPECT_FALSE(read());
    EXPECT_FALSE(points.IsSet());
    EXPECT_EQ(context.platform.desktop.PointerHistory().front(), Gui::HourglassPointer);
    EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
}

TEST_P(PointWorkbook, ShowsTheHourglassWhileItIsRead) {
    put(1, 1, 1.0);
    read();
    const auto& shapes = context.platform.desktop.PointerHistory();
    ASSERT_GE(shapes.size(), 2U);
    EXPECT_EQ(shapes.front(), Gui::HourglassPointer);
    EXPECT_EQ(shapes.back(), Gui::DefaultPointer);
}

TEST_P(PointWorkbook, SurvivesAFailureOfAnyCall) {
    put(1, 1, 600.0);
    read();
    const int calls = context.Spreadsheets.Calls();
    for (const FaultMode mode :
         {FaultMode::Fail, FaultMode::Exit, FaultMode::Empty, FaultMode::Reject}) {
        for (int n = 1; n <= calls; ++n) {
            points = PointArray();
            context.Spreadsheets.ForgetCalls();
            context.Spreadsheets.FailAt(n, mode);
            const bool complete = read();
            // Attaching may fail without consequences, and a call may that switches the alerts or
            // the macros off. Of empty answers only objects are missed.
            const bool missed = mode == FaultMode::Empty
                                    ? n == 2 || n == 5 || n == 6
                                    : mode != FaultMode::Fail || (n != 3 && n != 4);
            EXPECT_EQ(complete, n == 1 || !missed) << n;
            EXPECT_EQ(context.Spreadsheets.OpenObjects(), 0);
            EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
        }
    }
}

} // namespace
} // namespace kalvrooms
