#include "grid/grid.h"

#include <gtest/gtest.h>

#include "tests/fakes/text_table.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

std::vector<std::vector<std::string>> someRows(int count) {
  std::vector<std::vector<std::string>> texts;
  for (int i = 0; i < count; ++i)
    texts.push_back(
        {std::to_string(i), std::to_string(500 + i), "AM", "text " + std::to_string(i)});
  return texts;
}

class GridTest : public testing::Test {
 protected:
  explicit GridTest(int rows = 30) : table_(someRows(rows)) { grid_.setPage(10); }
  bool press(int keyCode, int shift = 0) { return grid_.keyDown(keyCode, shift); }
  void type(const char* characters) {
    for (; *characters; ++characters) {
      const auto character = static_cast<char32_t>(*characters);
      if (!grid_.keyPress(character) && grid_.editing()) grid_.edited(grid_.text() + *characters);
    }
  }
  GridCell at() const { return grid_.current(); }

  fakes::TextTable table_;
  Grid grid_{table_,
             {{"No", 40, false, false, false},
              {"Number", 60, true},
              {"Pick", 60, false, true},
              {"Text", 90}}};
};

TEST_F(GridTest, ArrowsPagesHomeAndEndMoveTheCurrentCellAndItStaysInView) {
  press(key::Down);
  press(key::Right);
  EXPECT_EQ(at(), (GridCell{1, 1}));
  press(key::PageDown);
  EXPECT_EQ(at(), (GridCell{11, 1}));
  EXPECT_EQ(grid_.top(), 2u);
  press(key::End, key::CtrlHeld);
  EXPECT_EQ(at(), (GridCell{29, 1}));
  EXPECT_EQ(grid_.top(), 20u);
  press(key::Down);
  press(key::End);
  press(key::Right);
  EXPECT_EQ(at(), (GridCell{29, 3})) << "not beyond the ends";
  press(key::Home);
  press(key::Left);
  EXPECT_EQ(at(), (GridCell{29, 0}));
  press(key::PageUp);
  EXPECT_EQ(at(), (GridCell{19, 0}));
  EXPECT_EQ(grid_.top(), 19u);
  press(key::Home, key::CtrlHeld);
  press(key::Up);
  EXPECT_EQ(at(), (GridCell{0, 0}));
  EXPECT_EQ(grid_.top(), 0u);
}

TEST_F(GridTest, AHiddenColumnIsPassedOverAndLeft) {
  grid_.select({0, 3});
  grid_.showColumn(3, false);
  EXPECT_EQ(at(), (GridCell{0, 2}));
  grid_.showColumn(1, false);
  press(key::Left);
  EXPECT_EQ(at(), (GridCell{0, 0}));
  press(key::End);
  EXPECT_EQ(at(), (GridCell{0, 2}));
  grid_.select({4, 3});
  EXPECT_EQ(at(), (GridCell{4, 2})) << "the nearest that there is";
  grid_.showColumn(0, false);
  press(key::Home);
  EXPECT_EQ(at(), (GridCell{4, 2}));
}

TEST_F(GridTest, TabGoesThroughTheRowAndOutOfTheGridAndOverRowsWhileEditing) {
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(press(key::Tab));
  EXPECT_EQ(at(), (GridCell{0, 3}));
  EXPECT_FALSE(press(key::Tab)) << "the next control's turn";
  EXPECT_TRUE(press(key::Tab, key::ShiftHeld));
  EXPECT_EQ(at(), (GridCell{0, 2}));
  grid_.select({0, 3});
  type("x");
  EXPECT_TRUE(press(key::Tab));
  EXPECT_EQ(at(), (GridCell{1, 0}));
  EXPECT_EQ(table_.texts[0][3], "x");
  grid_.select({29, 3});
  type("y");
  EXPECT_FALSE(press(key::Tab)) << "there is no row after the last";
  EXPECT_EQ(table_.texts[29][3], "y");
}

TEST_F(GridTest, TypingReplacesF2KeepsAndEscapeTakesBack) {
  grid_.select({2, 1});
  type("7x07");
  EXPECT_TRUE(grid_.editing());
  EXPECT_EQ(grid_.text(), "707") << "the column takes digits alone";
  EXPECT_TRUE(press(key::Return));
  EXPECT_EQ(table_.texts[2][1], "707");
  EXPECT_FALSE(grid_.editing());
  press(key::F2);
  EXPECT_EQ(grid_.text(), "707");
  EXPECT_FALSE(press(key::Home)) << "the field's own";
  EXPECT_EQ(grid_.edited("1a2b3c4"), "1234");
  EXPECT_TRUE(press(key::Esc));
  EXPECT_EQ(table_.texts[2][1], "707");
  EXPECT_FALSE(press(key::Esc)) << "nothing to give up: the window's own";
  EXPECT_TRUE(grid_.keyPress(key::Backspace));
  EXPECT_EQ(grid_.text(), "");
  press(key::Down);
  EXPECT_EQ(table_.texts[2][1], "707") << "an empty number brings the old one back";
  EXPECT_EQ(at(), (GridCell{3, 1}));
  EXPECT_EQ(table_.stores, 1);
}

TEST_F(GridTest, WhatIsEnteredIsCorrectedAndLeavingTheCellCommits) {
  grid_.select({0, 1});
  type("7");
  grid_.select({5, 3});
  EXPECT_EQ(table_.texts[0][1], "100");
  type("abc");
  grid_.headerClicked(1);
  EXPECT_EQ(table_.texts[5][3], "abc");
  EXPECT_EQ(table_.headers, std::vector<int>{1});
  grid_.select({0, 0});
  type("9");
  EXPECT_FALSE(grid_.editing()) << "not an editable column";
  EXPECT_EQ(table_.texts[0][0], "0");
}

TEST_F(GridTest, APickListIsOpenedMarkedChosenAndFolded) {
  grid_.select({1, 2});
  EXPECT_TRUE(press(key::Return));
  ASSERT_TRUE(grid_.dropped());
  EXPECT_EQ(grid_.items(), table_.list);
  EXPECT_EQ(grid_.marked(), 0);
  press(key::End);
  press(key::Up);
  EXPECT_EQ(grid_.marked(), 1);
  press(key::Esc);
  EXPECT_EQ(table_.texts[1][2], "AM");
  for (const int opener : {key::F2, key::F4, key::Down}) {
    table_.texts[1][2] = "odd";
    EXPECT_TRUE(press(opener, opener == key::Down ? key::AltHeld : 0));
    ASSERT_TRUE(grid_.dropped()) << opener;
    EXPECT_EQ(grid_.marked(), -1);
    press(key::Down);
    press(key::Down);
    press(key::Return);
    EXPECT_EQ(table_.texts[1][2], "AMS");
    EXPECT_FALSE(grid_.dropped());
  }
  grid_.drop();
  type("u");
  EXPECT_EQ(table_.texts[1][2], "AMS") << "only marked so far";
  EXPECT_TRUE(press(key::Tab));
  EXPECT_EQ(table_.texts[1][2], "USB");
  EXPECT_EQ(at(), (GridCell{1, 3}));
}

TEST_F(GridTest, TypeAheadInTheCellTakesTheLastMatchAndForgetsAfterFewerThanTwo) {
  grid_.select({0, 2});
  const auto typed = [&](const char* characters) {
    type(characters);
    return table_.texts[0][2];
  };
  EXPECT_EQ(typed("a"), "AMS");
  EXPECT_EQ(typed("m"), "AMS");
  EXPECT_EQ(typed("s"), "AMS") << "one match: the next key begins anew";
  EXPECT_EQ(typed("u"), "USB");
  EXPECT_EQ(typed("a"), "AMS");
  EXPECT_EQ(typed("x"), "AMS") << "no match changes nothing and forgets";
  EXPECT_EQ(typed("u"), "USB");
  typed("am");
  EXPECT_EQ(typed("\b\bu"), "USB") << "Backspace takes typed characters away";
  EXPECT_EQ(typed("\b\bu"), "USB") << "and does nothing where there is none";
  EXPECT_FALSE(grid_.editing());
}

TEST_F(GridTest, TheTablesOwnKeysComeFirstButNotWhileACellIsEdited) {
  table_.own = key::Space;
  EXPECT_TRUE(press(key::Space));
  EXPECT_FALSE(press(key::Delete));
  grid_.select({0, 3});
  type("x");
  table_.keys.clear();
  EXPECT_FALSE(press(key::Space));
  EXPECT_TRUE(table_.keys.empty());
}

TEST_F(GridTest, EditsAreTakenBackOneByOne) {
  grid_.select({0, 3});
  type("x");
  press(key::Return);
  grid_.select({1, 2});
  type("u");
  for (const char* left : {"AM", "AM"}) {
    EXPECT_TRUE(press('Z', key::CtrlHeld));
    EXPECT_EQ(table_.texts[1][2], left);
  }
  EXPECT_EQ(table_.texts[0][3], "text 0");
}

TEST_F(GridTest, WhileLockedNothingIsChangedAndTheCellMoves) {
  grid_.select({0, 3});
  type("x");
  grid_.lock(true);
  EXPECT_FALSE(grid_.editing());
  type("y");
  press(key::F2);
  press('Z', key::CtrlHeld);
  grid_.select({1, 2});
  type("u");
  press(key::F4);
  EXPECT_FALSE(grid_.editing() || grid_.dropped());
  EXPECT_EQ(table_.stores, 0);
  EXPECT_EQ(at(), (GridCell{1, 2}));
}

TEST_F(GridTest, ScrollingLeavesTheCurrentCellAndStopsAtTheEnds) {
  grid_.scrollBy(3);
  EXPECT_EQ(grid_.top(), 3u);
  EXPECT_EQ(at(), (GridCell{0, 0}));
  grid_.scrollBy(-10);
  EXPECT_EQ(grid_.top(), 0u);
  grid_.scrollTo(~GridRow{0});
  EXPECT_EQ(grid_.top(), 20u);
  grid_.setPage(25);
  EXPECT_EQ(grid_.top(), 5u);
}

TEST_F(GridTest, RowsThatGoTakeTheCurrentCellAndAnEntryAlong) {
  grid_.select({29, 3});
  type("x");
  table_.texts.resize(4);
  grid_.refresh();
  EXPECT_EQ(at(), (GridCell{3, 3}));
  EXPECT_FALSE(grid_.editing());
  EXPECT_EQ(grid_.top(), 0u);
  table_.texts.clear();
  grid_.refresh();
  for (const int code : std::initializer_list<int>{key::Down, key::Tab, key::F2, key::End})
    press(code);
  type("x");
  EXPECT_FALSE(grid_.find("x", Grid::Find::AtCurrent));
  EXPECT_FALSE(grid_.editing());
  EXPECT_EQ(at(), (GridCell{0, 3}));
}

TEST_F(GridTest, FindGoesOverAllVisibleColumnsAndRound) {
  EXPECT_TRUE(grid_.find("TEXT 2", Grid::Find::AtCurrent));
  EXPECT_EQ(at(), (GridCell{2, 3}));
  EXPECT_TRUE(grid_.find("Text 2", Grid::Find::AtCurrent));
  EXPECT_EQ(at(), (GridCell{2, 3})) << "it stays on a match while it is typed";
  EXPECT_TRUE(grid_.find("text 2", Grid::Find::Next));
  EXPECT_EQ(at(), (GridCell{20, 3}));
  EXPECT_TRUE(grid_.find("text 2", Grid::Find::Previous));
  EXPECT_TRUE(grid_.find("text 2", Grid::Find::Previous));
  EXPECT_EQ(at(), (GridCell{29, 3}));
  EXPECT_TRUE(grid_.find("515", Grid::Find::Next));
  EXPECT_EQ(at(), (GridCell{15, 1}));
  EXPECT_FALSE(grid_.find("nowhere", Grid::Find::Next));
  EXPECT_FALSE(grid_.find("", Grid::Find::Next));
  EXPECT_EQ(at(), (GridCell{15, 1}));
  grid_.showColumn(3, false);
  EXPECT_FALSE(grid_.find("text", Grid::Find::Next));
}

}  // namespace
}  // namespace kelvane
