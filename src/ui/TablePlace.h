#pragma once
// Where the user is in a table, so that it stays there when it is filled anew.

#include <algorithm>

#include "platform/Gui.h"

namespace kalvrooms {

class TablePlace {
  public:
    explicit TablePlace(Gui::Grid& grid)
        : grid_(grid), topRow_(grid.TopRow()), column_(grid.Col()) {}

    // With that row as the current one; it is shown in any case.
    void Restore(int row) const {
        row = std::min(row, grid_.Cells().Rows() - 1);
        grid_.Col(column_);
        grid_.Row(row);
        grid_.TopRow(topRow_);
        // Once more, in case that it was out of sight.
        grid_.Row(row);
    }

  private:
    Gui::Grid& grid_;
    int topRow_;
    int column_;
};

} // namespace kalvrooms
