#include "platform/GridCells.h"

#include <algorithm>
#include <new>

#include "model/LetterRules.h"
#include "support/MemoryLimit.h"
#include "support/UserLocaleForTest.h"

namespace kalvrooms::Gui {
namespace {

using Texts = std::vector<std::wstring>;

// A header and a column of texts, with the original position in a second column.
GridCells gridOf(const Texts& texts) {
    GridCells cells;
    cells.Resize(static_cast<int>(texts.size()) + 1, 2);
    cells.Text(0, 0, L"Kopf");
    for (std::size_t i = 0; i < texts.size(); ++i) {
        cells.Text(static_cast<int>(i) + 1, 0, texts[i]);
        cells.Text(static_cast<int>(i) + 1, 1, std::to_wstring(i));
    }
    return cells;
}

Texts column(const GridCells& cells, int which = 0) {
    Texts texts;
    for (int row = 1; row < cells.Rows(); ++row)
        texts.push_back(cells.Text(row, which));
    return texts;
}

Texts sorted(const Texts& texts, SortOrder order = SortOrder::Ascending) {
    GridCells cells = gridOf(texts);
    cells.Sort(1, cells.Rows() - 1, 0, order);
    EXPECT_EQ(cells.Text(0, 0), L"Kopf");
    return column(cells);
}

class GridCellsSort : public testing::Test {
  protected:
    UserLocaleForTest locale_{NumberLocale::German()};
};

} // namespace

TEST(GridCells, StartsEmpty) {
    const GridCells cells;
    EXPECT_EQ(cells.Rows(), 0);
    EXPECT_EQ(cells.Columns(), 0);
}

TEST(GridCells, StaysWholeWhenThereIsNoMemoryForAnotherShape) {
    const std::wstring text = L"too long for a text that needs no memory of its own";
    for (const int columns : {1, 2, 3}) {
        SCOPED_TRACE(columns);
        GridCells cells;
        cells.Resize(2, 2);
        cells.Text(1, 1, text);
        const std::uint64_t changes = cells.Changes();
        int failures = 0;
        for (std::size_t bytes = 0;; bytes += 16) {
            try {
                const MemoryLimit limit(bytes);
                cells.Resize(4, columns);
                break;
            } catch (const std::bad_alloc&) {
                ++failures;
            }
            ASSERT_EQ(cells.Rows(), 2);
            ASSERT_EQ(cells.Columns(), 2);
            ASSERT_EQ(cells.Changes(), changes);
            ASSERT_EQ(cells.Text(1, 1), text);
            ASSERT_EQ(cells.Text(0, 1), L"");
        }
        EXPECT_GT(failures, 2);
        EXPECT_EQ(cells.Rows(), 4);
        EXPECT_EQ(cells.Columns(), columns);
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < columns; ++column)
                EXPECT_EQ(cells.Text(row, column), row == 1 && column == 1 ? text : L"");
        EXPECT_EQ(cells.TextColour(0, 0), std::nullopt);
        EXPECT_EQ(cells.CellAlignment(0, 0), Alignment::Left);
    }
}

TEST(GridCells, KeepsWhatFitsWhenTheShapeChanges) {
    GridCells cells;
    cells.Resize(3, 3);
    cells.Text(0, 0, L"Kopf");
    cells.Text(1, 1, L"Mitte");
    cells.Text(2, 2, L"Ecke");
    cells.TextColour(1, 1, 255);
    cells.CellAlignment(1, 1, Alignment::Centre);
    cells.Resize(2, 2);
    cells.Resize(4, 4);
    EXPECT_EQ(cells.Text(0, 0), L"Kopf");
    EXPECT_EQ(cells.Text(1, 1), L"Mitte");
    EXPECT_EQ(cells.TextColour(1, 1), 255);
    EXPECT_EQ(cells.CellAlignment(1, 1), Alignment::Centre);
    EXPECT_EQ(cells.Text(2, 2), L"");
}

TEST(GridCells, ClearEmptiesEveryCellAndKeepsTheShape) {
    GridCells cells;
    cells.Resize(2, 2);
    for (int row = 0; row < 2; ++row)
        for (int col = 0; col < 2; ++col) {
            cells.Text(row, col, L"x");
            cells.TextColour(row, col, 1);
            cells.CellAlignment(row, col, Alignment::Centre);
        }
    cells.Clear();
    EXPECT_EQ(cells.Rows(), 2);
    EXPECT_EQ(cells.Columns(), 2);
    for (int row = 0; row < 2; ++row)
        for (int col = 0; col < 2; ++col) {
            EXPECT_EQ(cells.Text(row, col), L"");
            EXPECT_EQ(cells.TextColour(row, col), std::nullopt);
            EXPECT_EQ(cells.CellAlignment(row, col), Alignment::Left);
        }
}

TEST(GridCells, KnowsTheLastRowWithATextInIt) {
    GridCells cells;
    EXPECT_EQ(cells.LastFilledRow(), -1);
    cells.Resize(5, 2);
    EXPECT_EQ(cells.LastFilledRow(), -1);
    cells.Text(0, 0, L"Kopf");
    EXPECT_EQ(cells.LastFilledRow(), 0);
    cells.Text(3, 1, L"x");
    EXPECT_EQ(cells.LastFilledRow(), 3);
}

TEST(GridCells, EveryChangeCounts) {
    GridCells cells;
    const std::function<void()> changes[] = {
        [&] { cells.Resize(3, 2); }, [&] { cells.Text(1, 0, L"x"); },
        [&] { cells.Sort(1, 2, 0, SortOrder::Ascending); }, [&] { cells.Supply(1, 2, nullptr); },
        [&] { cells.Clear(); }};
    for (const auto& change : changes) {
        const std::uint64_t before = cells.Changes();
        change();
        EXPECT_GT(cells.Changes(), before);
    }
}

TEST(GridCells, ARowThatCouldNotBeSuppliedLeavesNothingBehind) {
    GridCells cells;
    cells.Resize(2, 1);
    cells.Supply(0, 2, [](std::int32_t number, std::vector<GridCells::Cell>& row) {
        row[0].text = std::to_wstring(number);
        if (number == 2)
            throw RuntimeError(RuntimeError::OutOfMemory);
    });
    EXPECT_EQ(cells.Text(0, 0), L"1");
    EXPECT_EQ(errorOf([&] { cells.Text(1, 0); }), RuntimeError::OutOfMemory);
    EXPECT_EQ(cells.Text(0, 0), L"1");
}

TEST(GridCells, AsksForRowsThatAreSupplied) {
    int asked = 0;
    GridCells cells;
    cells.Resize(4, 2);
    cells.Text(0, 0, L"Kopf");
    cells.Supply(1, 2, [&asked](std::int32_t number, std::vector<GridCells::Cell>& row) {
        ++asked;
        row[0] = {std::to_wstring(number), 7, Alignment::Centre};
    });
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(cells.LastFilledRow(), 2);
    EXPECT_EQ(column(cells), (Texts{L"1", L"2", L""}));
    EXPECT_EQ(cells.TextColour(2, 0), 7);
    EXPECT_EQ(cells.CellAlignment(2, 0), Alignment::Centre);
    EXPECT_EQ(cells.Text(2, 1), L"");
    EXPECT_EQ(asked, 3); // once for a row that is looked at again and again
    cells.Sort(1, 2, 0, SortOrder::Descending);
    EXPECT_EQ(column(cells), (Texts{L"2", L"1", L""}));
    // What is set is kept, with the rest of its row.
    cells.Text(1, 1, L"x");
    cells.Resize(5, 3);
    EXPECT_EQ(cells.Text(1, 0), L"2");
    EXPECT_EQ(cells.Text(1, 1), L"x");
    EXPECT_EQ(cells.Text(2, 0), L"1");
    cells.Clear();
    EXPECT_EQ(cells.LastFilledRow(), -1);
    EXPECT_EQ(cells.Rows(), 5);
}

TEST(GridCells, RefusesWhatLiesOutside) {
    GridCells cells;
    cells.Resize(2, 3);
    const std::pair<int, int> outside[] = {{-1, 0}, {2, 0}, {0, -1}, {0, 3}};
    for (const auto& [row, col] : outside) {
        const int r = row;
        const int c = col;
        EXPECT_EQ(errorOf([&] { cells.Text(r, c); }), RuntimeError::SubscriptOutOfRange);
        EXPECT_EQ(errorOf([&] { cells.Text(r, c, L"x"); }), RuntimeError::SubscriptOutOfRange);
        EXPECT_EQ(errorOf([&] { cells.TextColour(r, c); }), RuntimeError::SubscriptOutOfRange);
        EXPECT_EQ(errorOf([&] { cells.TextColour(r, c, 1); }), RuntimeError::SubscriptOutOfRange);
        EXPECT_EQ(errorOf([&] { cells.CellAlignment(r, c); }), RuntimeError::SubscriptOutOfRange);
        EXPECT_EQ(errorOf([&] { cells.CellAlignment(r, c, Alignment::Centre); }),
                  RuntimeError::SubscriptOutOfRange);
    }
    EXPECT_EQ(errorOf([&] { cells.Resize(-1, 1); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { cells.Resize(1, -1); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { cells.Sort(1, 2, 0, SortOrder::Ascending); }),
              RuntimeError::SubscriptOutOfRange);
    for (const int first : {0, 1})
        EXPECT_EQ(errorOf([&] { cells.Sort(first, 1, 3, SortOrder::Ascending); }),
                  RuntimeError::SubscriptOutOfRange);
    const std::pair<int, int> notSupplied[] = {{-1, 1}, {0, -1}, {0, 3}, {1, 2}};
    for (const auto& range : notSupplied)
        EXPECT_EQ(errorOf([&] { cells.Supply(range.first, range.second, nullptr); }),
                  RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(cells.Rows(), 2);
    // The edges lie inside.
    const std::pair<int, int> supplied[] = {{0, 2}, {1, 1}, {2, 0}};
    for (const auto& range : supplied)
        EXPECT_EQ(errorOf([&] { cells.Supply(range.first, range.second, nullptr); }), 0);
    EXPECT_EQ(errorOf([&] { cells.Resize(0, 0); }), 0);
}

TEST_F(GridCellsSort, ComparesNumbersAsNumbers) {
    EXPECT_EQ(sorted({L"100", L"20", L"-3", L"9,5", L"9,25"}),
              (Texts{L"-3", L"9,25", L"9,5", L"20", L"100"}));
}

TEST_F(GridCellsSort, TakesTheUsersMarks) {
    EXPECT_EQ(sorted({L"1.000", L"999", L"1,5"}), (Texts{L"1,5", L"999", L"1.000"}));
    const UserLocaleForTest point(NumberLocale::Point());
    EXPECT_EQ(sorted({L"1.000", L"999", L"1,500"}), (Texts{L"1.000", L"999", L"1,500"}));
}

TEST_F(GridCellsSort, ComparesTextsWithoutRegardToCase) {
    EXPECT_EQ(sorted({L"b", L"C", L"A", L"a1", L"B1"}), (Texts{L"A", L"a1", L"b", L"B1", L"C"}));
}

TEST_F(GridCellsSort, TakesTheAlphabeticalOrderOfTheSystem) {
    HandInLetterRules(
        {[](const std::wstring& text) { return text; },
         [](const std::wstring& text) { return std::string(text.rbegin(), text.rend()); }});
    EXPECT_EQ(sorted({L"az", L"ba", L"cm"}), (Texts{L"ba", L"cm", L"az"}));
    HandInLetterRules({});
    EXPECT_EQ(sorted({L"ba", L"cm", L"az"}), (Texts{L"az", L"ba", L"cm"}));
}

TEST_F(GridCellsSort, PutsNumbersBeforeTextsOfWhichEmptyOnesComeFirst) {
    EXPECT_EQ(sorted({L"", L"Büro", L"7", L"", L"-1", L"Archiv"}),
              (Texts{L"-1", L"7", L"", L"", L"Archiv", L"Büro"}));
}

TEST_F(GridCellsSort, DescendingIsTheReverse) {
    const Texts texts{L"", L"Büro", L"7", L"12", L"büro", L"", L"7,0", L"Archiv"};
    Texts ascending = sorted(texts);
    std::reverse(ascending.begin(), ascending.end());
    EXPECT_EQ(sorted(texts, SortOrder::Descending), ascending);
    EXPECT_EQ(ascending.back(), ascending[ascending.size() - 2] == L"7" ? L"7,0" : L"7");
}

TEST_F(GridCellsSort, MovesWholeRows) {
    GridCells cells = gridOf({L"b", L"c", L"a"});
    cells.TextColour(3, 0, 255);
    cells.CellAlignment(3, 1, Alignment::Centre);
    cells.Sort(1, 3, 0, SortOrder::Ascending);
    EXPECT_EQ(column(cells, 1), (Texts{L"2", L"0", L"1"}));
    EXPECT_EQ(cells.TextColour(1, 0), 255);
    EXPECT_EQ(cells.CellAlignment(1, 1), Alignment::Centre);
    EXPECT_EQ(cells.TextColour(3, 0), std::nullopt);
}

TEST_F(GridCellsSort, LeavesTheRowsOutsideItsRange) {
    GridCells cells = gridOf({L"d", L"c", L"b", L"a"});
    cells.Sort(2, 3, 0, SortOrder::Ascending);
    EXPECT_EQ(column(cells), (Texts{L"d", L"b", L"c", L"a"}));
}

TEST_F(GridCellsSort, DoesNothingForAnEmptyRange) {
    GridCells cells = gridOf({L"b", L"a"});
    cells.Sort(2, 1, 0, SortOrder::Ascending);
    EXPECT_EQ(column(cells), (Texts{L"b", L"a"}));
}

TEST_F(GridCellsSort, SortsByTheGivenColumn) {
    GridCells cells = gridOf({L"a", L"b", L"c"});
    cells.Sort(1, 3, 1, SortOrder::Descending);
    EXPECT_EQ(column(cells), (Texts{L"c", L"b", L"a"}));
}

TEST_F(GridCellsSort, AsksForTheLocaleOnce) {
    int asked = 0;
    HandInUserLocale([&asked] {
        ++asked;
        return NumberLocale::German();
    });
    EXPECT_EQ(sorted(Texts(50, L"1,5")), Texts(50, L"1,5"));
    EXPECT_EQ(asked, 1);
}

} // namespace kalvrooms::Gui
