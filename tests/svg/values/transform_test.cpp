// Transform lists: the record that each form leaves, and every malformed one.
#include <cmath>
#include <gtest/gtest.h>

#include "tests/support/reader.h"

TEST(Transform, KeepsWhatWasWrittenOrComposesAMatrix) {
  expect_values(R"(
g transform: rotate(30) -> rotate(30) | scale(2) -> scale(2) | scale(2,3) -> scale(2 3) | skewX(10) -> skewX(10)
g transform: \sskewY ( 10 )\s -> skewY(10) | translate(5) -> translate(5) | translate(5 -6) -> translate(5 -6)
g transform: matrix(1,2 3 4,5,6) -> matrix(1 2 3 4 5 6) | \s\s -> -
g transform: translate(10,20) scale(2) -> matrix(2 0 0 2 10 20)
g transform: translate(10,20),,scale(2) -> matrix(2 0 0 2 10 20)
g transform: translate(10,20)scale(2)translate(1 1) -> matrix(2 0 0 2 12 22)
g transform: scale(2) matrix(1 2 3 4 5 6) -> matrix(2 4 6 8 10 12) | scale(2)scale(3) -> matrix(6 0 0 6 0 0)
linearGradient gradientTransform: scale(2) -> scale(2)
pattern patternTransform: scale(2) -> scale(2)
)");
}

TEST(Transform, TurnsAboutAPoint) {
  const Document document("<svg xmlns='http://www.w3.org/2000/svg'><g id='a' "
                          "transform='rotate(90 10,20)'/><g id='b' transform='skewX(45) "
                          "skewY(45)'/></svg>");
  const auto numbers = [&](const char *id) {
    const auto *record = reinterpret_cast<const svg_an_trafo *>(document.find(id)->values[0]);
    EXPECT_EQ(record->type, SVG_TRAFO_MATRIX);
    return record->numbers;
  };
  const double about[] = {0, 1, -1, 0, 30, 10}; // (10, 20) stays
  const double skewed[] = {2, 1, 1, 1, 0, 0};   // y first, then x
  for (int i = 0; i < 6; ++i) {
    EXPECT_NEAR(numbers("a")[i], about[i], 1e-12) << i;
    EXPECT_NEAR(numbers("b")[i], skewed[i], 1e-12) << i;
  }
}

TEST(Transform, RefusesMalformedListsAsAWhole) {
  expect_values(R"(
g transform: rotate(30deg) -> ! 30deg | Rotate(30) -> ! Rotate | rotate 30 -> ! 30 | rotate() -> ! )
g transform: rotate(30 10) -> ! ) | rotate(30 10 20 5) -> ! 5 | rotate(30,,10 20) -> ! ,
g transform: rotate(3) skewY(1e999) -> ! rotate(3) skewY(1e999) | matrix(1 0 0 1 0) -> ! ) | matrix(1 0 0 1 0 0 0) -> ! 0 | skewX(10 20) -> ! 20
g transform: scale(0) skewX(1e308) -> ! scale(0) skewX(1e308) | rotate(1e999 1 2) -> ! rotate(1e999 1 2)
g transform: scale(1 2 3) -> ! 3 | scale(2) rotate(x) -> ! x | scale(2) none -> ! none
g transform: translate(1 -> ! | translate(1 2 -> ! | translate -> ! | translate(1), -> !
g transform: ,scale(2) -> ! , | 5 -> ! 5
)");
}
