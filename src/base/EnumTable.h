#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace quillmark {
namespace enums {

/// The compiler spells an enumerator by its name, "Colour::red", and any other value as a number, "(Colour)3".
template <auto value>
consteval bool isNamed() {
  std::string_view spelling = __PRETTY_FUNCTION__;  // "consteval bool … [with auto value = Colour::red]"
  spelling.remove_suffix(1);
  return spelling[spelling.find_last_not_of("0123456789")] != ')';
}

template <class Enum, std::size_t i = 0>
consteval std::size_t countNamed() {
  if constexpr (isNamed<static_cast<Enum>(i)>()) {
    return countNamed<Enum, i + 1>();
  } else {
    return i;
  }
}

enum class Sample { zero, a1, two };
static_assert(countNamed<Sample>() == 3, "this compiler spells enumerators in another way");

/// Never defined, so that a constant evaluation that calls it doesn't compile.
void aRowIsMissingDoubledOrMisplaced();

}  // namespace enums

/// The number of enumerators, whose values count up from 0, as the compiler knows it.
template <class Enum>
inline constexpr std::size_t enumeratorCount = enums::countNamed<Enum>();

/// All enumerators in their order.
template <class Enum>
constexpr std::array<Enum, enumeratorCount<Enum>> allCases() {
  std::array<Enum, enumeratorCount<Enum>> cases{};
  for (std::size_t i = 0; i < cases.size(); ++i) {
    cases[i] = static_cast<Enum>(i);
  }
  return cases;
}

/// A constant table with one row for each enumerator, in their order. A row is an aggregate with the enumerator as its
/// `key`:
///
///     struct Row { Colour key; const char* title; };
///     constexpr EnumTable<Row> rows{{{Colour::red, "Red"}, {Colour::green, "Green"}}};
///
/// A missing, duplicate or misplaced row does not compile, nor does an enumerator added without a row.
template <class Row>
class EnumTable {
 public:
  using Enum = decltype(Row::key);

  template <std::size_t count>
  consteval EnumTable(const Row (&rows)[count])  // NOLINT(google-explicit-constructor)
      : EnumTable(rows, std::make_index_sequence<count>()) {
    static_assert(count == enumeratorCount<Enum>, "there must be one row for each enumerator");
    for (std::size_t i = 0; i < count; ++i) {
      if (rows_[i].key != static_cast<Enum>(i)) {
        enums::aRowIsMissingDoubledOrMisplaced();
      }
    }
  }

  constexpr const Row& operator[](Enum value) const { return rows_[static_cast<std::size_t>(value)]; }
  constexpr auto begin() const { return rows_.begin(); }
  constexpr auto end() const { return rows_.end(); }

 private:
  template <std::size_t... i>
  consteval EnumTable(const Row (&rows)[sizeof...(i)], std::index_sequence<i...> /*places*/) : rows_{rows[i]...} {}

  std::array<Row, enumeratorCount<Enum>> rows_;
};

}  // namespace quillmark
