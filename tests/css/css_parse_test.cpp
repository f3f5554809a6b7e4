#include <gtest/gtest.h>

#include "css/css_engine.h"
#include "css/css_href.h"
#include "tests/css/toy.h"
#include "tests/support/cases.h"

static constexpr const char TREE[] = "svg(a.x!)";

// The rules that "a" gets, by decreasing precedence; "=" stands for the sheet itself.
TEST(CssParse, SheetsWithAndWithoutFaults) {
  expect_cases(R"t(
a{P-x_1:1} -> = | a{p:\70  x} -> a{p:p x} | a{p:u\rl(x;)} -> a{p:url(x;)}
a{p:x\;y;q:x\}y} -> a{p:"x;y";q:"x}y"} | a{p:';}' "/*";q:2} -> = | a{p:#\61 b} -> a{p:#ab}
a{p:'a\'b\\nc';q:2} -> a{p:"a'bc";q:2} | a{p:"\5FAE\8F6F"} -> a{p:"\xE5\xBE\xAE\xE8\xBD\xAF"}
a{p:1p\78;q:r\65 d;r:\31;s:1\65 2} -> a{p:1px;q:red;r:"1";s:1\65 2}
a{p:url(a\)b) url(\61 );q:u\72l('x\27')} -> a{p:url("a)b") url(a);q:url("x'")}
a{p:'\22\27'} -> = | a{p:x\!important;q:"x!important y"} -> a{p:"x!important";q:"x!important y"}
a{url(http://x/*y);p:1} -> a{p:1} | a{url(a'b);p:1} -> a{p:1} | @media url(;{), screen{a{p:1}} -> a{p:1}
a{@{}p:1;q:2} -> a{q:2} | a{p:url(data:x;/*,y})} -> =
a{p:url( ')' );q:2} -> = | a{p:f(;}[)]);q:{;}} -> = | \sa\t{ p : 1 ; q:2;; }\s -> a{p:1;q:2}
a{p:1;q:2 -> a{p:1;q:2} | a{p:1}a{q:2} -> a{q:2} a{p:1} | <!-- a{p:1} --> a{q:2} -> a{q:2} a{p:1}
@media screen{a{p:1}}a{q:2} -> a{q:2} a{p:1} | @media print{a{p:1}a}a{q:2} -> a{q:2} a{p:1}
/*x*/a/*{*/{/*;*/p/**/:/*}*/1/*}*/} -> a{p:1} | /* * / a{p:1} */ a{q:\0000651} -> a{q:e1} | p @here {q:2} a{p:1} -> a{p:1}
}} {{ - }} a{p:1} -> a{p:1} | ) ( {} ) p {q:2} a{p:1} -> a{p:1} | a; a{q:2} a{p:1} -> a{p:1}
a['\n]{q:2} a{p:1} -> a{p:1} | @foo @bar; a{p:1} -> a{p:1} | @charset "x";a{p:1} -> a{p:1}
@page :first{p:1}a{p:1} -> a{p:1} | @MEDIA tv , PRINT {a{p:1}} -> a{p:1} | @media{a{p:1}} -> a{p:1}
@m\65 dia print/**/{a{p:1}} -> a{p:1} | @media screen and (x:y), print{a{p:1}} -> a{p:1}
@media print{a{p:1}--> a{q:2}} -> a{p:1} | a{p:1/**/2} -> a{p:1 2} | /*/ a{p:1} */ a{q:2} -> a{q:2}
a{p:url(x y);q:2} -> a{q:2} | a{p:url(x'y);q:2} -> a{q:2} | a{)p:1;q:2} -> a{q:2}
@media not print{a{p:1}}a{q:2} -> a{q:2} | @ media{a{p:1}}a{q:2} -> a{q:2}
a{p:1 !import ant;q:2} -> a{q:2} | a{\70:1;\000071 x:2} -> a{p:1;qx:2}
a{p:xurl(/*)*/x)} -> a{p:xurl( x)} | a{font:x;p:1} -> a{font:x;font:x;p:1}
a{p:url(x -> a{p:url(x)} | a{p:url('x -> a{p:url('x')} | a{p:f([{"x -> a{p:f([{"x"}])}
a{p:1;q;r:2} -> a{p:1;r:2} | a{p:1;q:;r:2;s:/**/ } -> a{p:1;r:2} | a{p:1;q{;q:2};r:3} -> a{p:1;r:3}
a{*p:1;-1:2;_p:3;-p:4;--p:5;9:6} -> a{_p:3;-p:4} | a{p:'x\n;q:2;r:3} -> a{q:2;r:3}
a{p:'x\n q:2;r:3} -> a{r:3} | a{@x y;p:1;@x{q:2}r:3;@x}a{q:2} -> a{q:2} a{p:1;r:3}
a{p:1} {q:2} a{r:3} -> a{r:3} a{p:1} | a{p:1}}a{q:2} a{r:3} -> a{r:3} a{p:1}
@media all{a{p:1} @media tv{a{q:1}} @media print{a{r:2}} a{s:3}} a{t:4} -> a{t:4} a{s:3} a{r:2} a{p:1}
@media screen and (x:{y}),{a{p:1}} ->
a{p:1 !important x;q:2 ! ;r:!important;s:3!important!important} ->
a{p:'x\\x0d\ny\\x0dz\\x0c'} -> a{p:"xyz"} | a{p:'x\x0cq:1;s:3} -> a{s:3} | a{p:'x\ -> | a{p:1}/* * / -> a{p:1}
a\x0d\x0c{p:1} -> a{p:1} | @media print,7{a{p:1}} -> a{p:1} | @media print;a{p:1} -> a{p:1}
@media 'x\n{a{p:1}} -> | a:{p:1}a{q:2 -> a{q:2} | @x{ -> | a{\\n:1;q:2} -> a{q:2}
a{p:1!important} -> a{p:1 !important} | a{p:1 ! /**/ IMPORT\61nt } -> a{p:1 !important})t",
               [](const std::string &sheet) {
                 AccountingCore core;
                 Toy toy(core);
                 toy.parse(sheet);
                 const std::string rules = toy.rules(TREE);
                 return rules == sheet + " " ? "=" : rules;
               });
}

// One case for each tie-break. The tree's a has the class x, the id i and the attribute k. Within a
// rule the last one of a property wins, whatever the letter case.
TEST(CssCascade, Precedence) {
  expect_cases(R"(
a{p:1} a{p:2} -> a{p:2} a{p:1} | a, .x, svg a{p:1} -> .x{p:1}
a{p:1!important} #i{p:2!important} -> #i{p:2 !important} a{p:1 !important}
a{p:1;q:2!important;r:3} .x{q:4} -> a{q:2 !important} .x{q:4} a{p:1;r:3}
*{p:0} svg a{p:1} a{p:2} -> svg a{p:1} a{p:2} *{p:0}
#i{p:1} .x.x.x[k] a{p:9} .x[k]:first-child{p:2} -> #i{p:1} .x[k]:first-child{p:2}
.x{p:1} svg > svg a, svg > a{p:2} -> .x{p:1} svg > a{p:2}
[k]{p:1} .x{p:2} :first-child{p:3} -> :first-child{p:3} .x{p:2} [k]{p:1}
a:not(#j){p:1} a.x[k]{p:2} -> a:not(#j){p:1} a.x[k]{p:2} | a{p:1;q:2;P:3} -> a{q:2;P:3}
a{p:1;p:2!important;p:3} -> a{p:2 !important} a{p:3}
a{font:1;font-size:2} -> a{font:1;font-size:2} | a{font-size:1;font:2;bad:3} -> a{font:2;font:2})",
               [](const std::string &sheet) {
                 AccountingCore core;
                 Toy toy(core);
                 toy.parse(sheet);
                 return toy.rules("svg(a.x#i[k=v]! b)");
               });
}

TEST(CssCascade, CountsDoNotCarry) {
  AccountingCore core;
  Toy toy(core);
  std::string classes;
  for (int i = 0; i < (1 << 21) + 9; ++i) classes += ".x";
  toy.parse(classes + "{p:1} #i{p:2}");
  EXPECT_EQ(toy.rules("svg(a.x#i!)").substr(0, 8), "#i{p:2} ");
}

TEST(CssParse, ARaiseLeavesAParserThatCanGoOn) {
  AccountingCore core;
  Toy toy(core);
  EXPECT_EQ(toy.parse("a{p:1} b{q:2;fatal:1}"), ORT_E_INTERNAL);
  EXPECT_EQ(toy.parse("a{r:3}"), 0);
  EXPECT_EQ(toy.rules(TREE), "a{r:3} a{p:1} ");
}

TEST(CssParse, BlocksHoldTheTextsAndSelectorsAreLogged) {
  AccountingCore core(AccountingCore::with_log(5));
  Toy toy(core);
  toy.parse("svg>a.x  +  b{ p: 1 2 ; font: x!important } @font-face{}");
  toy.build("svg(a.x b)");
  ort_vtr *rules = nullptr;
  for (ToyNode &node : toy.nodes) rules = toy.ask(node);
  ASSERT_EQ(ort_vtr_count(rules), 2U);
  EXPECT_STREQ(ort_item<css_rule *>(rules, 0)->decls->decl_texts[1], "x");
  EXPECT_TRUE(ort_item<css_rule *>(rules, 0)->decls->important);
  EXPECT_FALSE(ort_item<css_rule *>(rules, 1)->decls->important);
  EXPECT_STREQ(ort_item<css_rule *>(rules, 1)->decls->decl_texts[0], "1 2");
  css_logg_sel(toy.css, ort_item<css_rule *>(rules, 0)->selector);
  EXPECT_EQ(core.log, "\t\t\t\tselector: svg > a.x + b\n");
  EXPECT_EQ(toy.font_faces, 1);
}

// Nesting and repetition of a million, which recursion or quadratic work would not survive.
TEST(CssParse, BigInputs) {
  auto many = [](const std::string &text) {
    std::string all;
    for (int i = 0; i < 1000000; ++i) all += text;
    return all;
  };
  for (const std::string &begin :
       {many("{") + many("}"), many("a{") + many("}"), "b{p:" + many("([{") + many("}])") + "}",
        many("@media all{") + many("}"), "b{p:" + many("url(") + ")}", many("(") + many(")") + "{}",
        many("b>") + "b{p:1}", many("b,") + "b{p:1}", many(":not(") + many(")") + "{}",
        many("/**/"), many("\\") + "{}", "b{" + many("p:1;") + "}", "b{p:" + many("!") + "}",
        "@x" + many("@media ") + ";", many("@media url({)x{}\n"), many("@import 'a' url({);\n")}) {
    AccountingCore core;
    Toy toy(core);
    toy.parse(begin + " a{p:1}");
    EXPECT_EQ(toy.rules(TREE), "a{p:1} ") << begin.substr(0, 20);
  }
}

TEST(CssParse, EveryFailingAllocation) {
  allocation_sweep([](AccountingCore &core) {
    css_context context = {nullptr,
                           [](void *, const char *, css_sheet_text *text) {
                             css_context_append(text, "a{q:", 4);
                             return css_context_append(text, "\xFF}", 2);
                           },
                           nullptr};
    Toy toy(core, &context);
    bool good = toy.ready &&
                toy.parse("@import 'x' print; a,.x>b[k=v]~#i{p:'1';font:2!important}", "d/y") == 0;
    if (good) {
      toy.build("svg.x(b[k=v] a#i)");
      for (ToyNode &node : toy.nodes) good = good && toy.ask(node);
    }
    return good;
  });
}

TEST(CssHref, JoinsAsInRFC3986) {
  AccountingCore core;
  ort_bs *bs = ort_bs_new(core);
  expect_cases(R"(
- a.css -> a.css | - ./d/../a.css?q#f -> a.css?q | - ../../a -> ../../a | a -> a
d/e/a.css b -> d/e/b | d/e/a.css ../b -> d/b | d/e/a.css ../../../b -> ../b | ../a ../b -> ../../b
d/a /b -> /b | /d/a ../../b -> /b | d/a?x/y b -> d/b | http://h/d/a b -> http://h/d/b
http://h b -> http://h/b | http://h/d/a ../../b -> http://h/b | http://h/d/a /b -> http://h/b
http://h/a //i/b -> http://i/b | http://h/d/a?q ?r -> http://h/d/a?r | http://h/a x:b -> x:b)",
               [&](const std::string &input) {
                 const size_t blank = std::min(input.find(' '), input.size());
                 const std::string base = input.substr(0, blank);
                 ort_bs_clear(bs);
                 css_resolve_href(bs, base == "-" ? nullptr : base.c_str(),
                                  input.c_str() + std::min(blank + 1, input.size()));
                 return std::string(ort_bs_text(bs));
               });
  ort_bs_delete(bs);
}
