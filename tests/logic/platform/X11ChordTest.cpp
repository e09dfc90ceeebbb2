#include <gtest/gtest.h>

#include "platform/desktop/x11/chord/X11Chord.h"

namespace quillmark::chord {
namespace {

constexpr XKey control = 37, shift = 50, alt = 64, rightControl = 105, keyC = 54, keyV = 55, insert = 118, keyK = 45;

struct X11Chord : testing::Test {
  Keyboard keyboard;
  Moment moment;

  X11Chord() {
    keyboard.groups = {{keyC, keyV}};
    keyboard.insert = insert;
    keyboard.control = control;
    keyboard.shift = shift;
    for (const auto key : {control, shift, alt, rightControl}) {
      keyboard.modifiers.set(key);
    }
  }

  static std::vector<KeyboardEvent> combination(KeyCode letter) {
    return {{KeyCode::commandModifier, true, commandFlag},
            {letter, true, commandFlag},
            {KeyCode::commandModifier, false, commandFlag},
            {letter, false, commandFlag}};
  }
  /// "+37 +54 -37 -54": keys pressed and released, and "=1" for a group.
  std::string keys(KeyCode letter, Dialect dialect = Dialect::control) const {
    std::string result;
    for (const auto& [kind, value] : steps(combination(letter), keyboard, moment, dialect)) {
      result += result.empty() ? "" : " ";
      result += kind == Step::Kind::press ? '+' : kind == Step::Kind::release ? '-' : '=';
      result += std::to_string(value);
    }
    return result;
  }
};

TEST_F(X11Chord, keepsTheOrderOfTheEventsItWasTold) {
  EXPECT_EQ(keys(KeyCode::c), "+37 +54 -37 -54");
  EXPECT_EQ(keys(KeyCode::v), "+37 +55 -37 -55");
}

TEST_F(X11Chord, speaksTheDialectOfTheWindow) {
  EXPECT_EQ(keys(KeyCode::c, Dialect::controlShift), "+37 +50 +54 -50 -37 -54");
  EXPECT_EQ(keys(KeyCode::c, Dialect::none), "");
}

TEST_F(X11Chord, heldModifiersAreLiftedBehindItsOwnAndStayLifted) {
  moment.pressed.set(alt).set(shift).set(keyK);
  EXPECT_EQ(keys(KeyCode::c), "+37 -50 -64 +54 -37 -54") << "the held letter is no modifier";
  EXPECT_EQ(keys(KeyCode::c, Dialect::controlShift), "+37 -64 +54 -50 -37 -54") << "the held shift serves";

  moment.pressed.reset().set(control).set(rightControl);
  EXPECT_EQ(keys(KeyCode::c), "-105 +54 -37 -54");

  moment.pressed.reset().set(keyC);
  EXPECT_EQ(keys(KeyCode::c), "+37 -54 +54 -37 -54") << "a key that is down can't go down";
}

TEST_F(X11Chord, takesTheLetterWhereTheKeyboardHasIt) {
  keyboard.groups = {{0, 0}, {keyC, keyV}, {60, 61}};
  moment.group = moment.lockedGroup = 2;
  EXPECT_EQ(keys(KeyCode::c), "+37 =2 +60 -37 -60 =2");
  moment.group = moment.lockedGroup = 0;
  EXPECT_EQ(keys(KeyCode::c), "+37 =1 +54 -37 -54 =0");

  keyboard.groups = {{0, 0}};
  EXPECT_EQ(keys(KeyCode::c), "+37 +118 -37 -118") << "no Latin layout at all";
  EXPECT_EQ(keys(KeyCode::v), "+50 +118 -50 -118");
  keyboard.insert = 0;
  EXPECT_EQ(keys(KeyCode::c), "") << "nothing is better than a wrong key";
}

TEST(X11ChordDialect, isKnownByEitherNameOfTheWindowClass) {
  EXPECT_EQ(dialectOf("xterm", "XTerm"), Dialect::none);
  EXPECT_EQ(dialectOf("xterm", "UXTerm"), Dialect::none);
  EXPECT_EQ(dialectOf("gnome-terminal-server", "Gnome-terminal"), Dialect::controlShift);
  EXPECT_EQ(dialectOf("st", "my-own-term"), Dialect::controlShift);
  EXPECT_EQ(dialectOf("mousepad", "Mousepad"), Dialect::control);
  EXPECT_EQ(dialectOf("", ""), Dialect::control);
}

}  // namespace
}  // namespace quillmark::chord
