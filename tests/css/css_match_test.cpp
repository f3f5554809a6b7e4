#include <gtest/gtest.h>
#include <random>
#include <sstream>

#include "css/css_engine.h"
#include "tests/css/toy.h"
#include "tests/support/cases.h"

// "SELECTOR IN TREE": the marks in the tree say what the selector matches.
TEST(CssMatch, Selectors) {
  expect_cases(R"t(
* IN svg!(a! rect!) -> | unknown IN svg(a zzz) -> | .x IN svg.y(a.x! b.y.x! c.X d[class=x]) ->
.x.y IN svg(a.x b.x.y! c.y.x! d.y) -> | #i IN svg(a#i! b.i c#I d#i!) ->
a.x#i[k] IN svg(a.x#i[k=]! b.x#i[k=] a.x[k=]) -> | a rect IN svg(a(b(rect!) rect!) rect) ->
a>rect IN svg(a(b(rect) rect!) rect) -> | .x > b IN svg(a.x.x(b!) c(b)) ->
a + rect IN svg(a(rect) rect! rect a b rect) -> | a a IN a(a!(b(a!)) a!) ->
a ~ rect IN svg(rect a(rect) rect! b rect! b(rect)) -> | [k] IN svg(a[k=] ! b[K=1] c[k=v]!) ->
[k=v] IN svg(a[k=v]! b[k=V] c[k=v_] d[k=] e[k=v][k=w]! f[k=w][k=v]) ->
[ k = 'v w' ] IN svg(a[k=v_w]! b[k=v]) -> | [k=''] IN svg(a[k=]! b[k=_] c) ->
[k~=v] IN svg(a[k=v]! b[k=u_v_w]! c[k=vv_v!x] d[k=_v_]! e[k=uv]) ->
[k~=''] IN svg(a[k=] b[k=_]) -> | [k|=en] IN svg(a[k=en]! b[k=en-us]! c[k=english] d[k=e]) ->
[k^=v] IN svg(a[k=v]! b[k=vw]! c[k=wv]) -> | [k$=v] IN svg(a[k=v]! b[k=vw] c[k=wv]!) ->
[k*=v] IN svg(a[k=v]! b[k=uvw]! c[k=]) -> | [k^=''],[k$=''],[k*=''] IN svg(a[k=] b[k=v]) ->
[k|=''] IN svg(a[k=]! b[k=-x]! c[k=x]) -> | :first-child IN svg(a!(b! c) d) ->
a:FIRST-child IN svg(a! a b(a! a)) -> | :root IN svg!(svg) ->
:root > a:not(:first-child) IN svg(a a! b(b a)) -> | :not(a) IN svg!(a b!) -> | :not(*) IN svg(a) ->
a:not(.x):not( #i ):not([k=v]) IN svg(a! a.x a#i a[k=v] a[k=w]! b) ->
a:lang(en), b IN svg(a b!) -> | :not(.x) > a IN svg(a! b.x(a)) -> | :not(:hover) IN svg!(a!) ->
a:hover, a::before, a:first-line, b IN svg(a b!) -> | ./**/x:/**/first-child IN svg(a.x! b.x) -> | r\65 ct IN svg(rect! ect) ->
.\31 2, .\33\x0d\n4 IN svg(a.12! b.1 c.34!) -> | #a\:b IN svg(a#a:b! b#a) ->
.ä IN svg(a.ä! b.a) -> | [k='\110000\0\d800'] IN svg(a[k=\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD]!) ->
[k='\76\'\\n'] IN svg(a[k=v']!) -> | .\33\x0d4 IN svg(c.34!) -> | :not(zzz) IN svg!(a!) ->
[k='\7e\80\7ff\800\d7ff\e000\ffff\10000\10ffff'] IN svg(a[k=~\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF]! b[k=~x!]) ->)t",
               [](const std::string &input) -> std::string {
                 const size_t in = input.find(" IN ");
                 for (bool facts : {true, false}) {
                   AccountingCore core;
                   Toy toy(core);
                   toy.parse(input.substr(0, in) + "{p:1}");
                   toy.build(input.substr(in + 4));
                   for (ToyNode &node : toy.nodes)
                     if ((ort_vtr_count(toy.ask(node, facts)) > 0) != node.marked)
                       return "element " + std::to_string(&node - &toy.nodes[0]);
                 }
                 return "";
               });
}

TEST(CssMatch, MalformedSelectorsVoidTheRule) {
  const struct {
    const char *expected;  // of the rule after it, which an open bracket swallows
    const char *selectors; // separated by "%"
  } cases[] = {
      {"rect{q:2} ",
       "%a,%,a%a,,b%a >%> a%a > > b%a + + b%.%#%.1%#1%a..b%a.%[]%[k=]%[k=1]%[k==v]%[k~v]%[k=v w]%"
       "[1=v]%a b&%a $%:%a:%::%a:zzz%:zzz, a%:first-child()%:not()%:not(a b)%:not(:not(a))%"
       ":not(::before)%b:before a, "
       "a%a::before.x%b:before>a%#/**/i%:lang()%*a%.x*%a|b%a/**/b%a;b%'a'%a(b)%a]%@a "
       "b%--a%a::zzz%\\\n"},
      {"", "[%[k%[k=v%[k='v]%:first-child(%:not(%:not(a%a {%\\"}};
  for (const auto &test : cases) {
    std::istringstream selectors(test.selectors);
    for (std::string selector; std::getline(selectors, selector, '%');) {
      AccountingCore core;
      Toy toy(core);
      toy.parse(selector + "{p:1} rect{q:2}");
      EXPECT_EQ(toy.rules("svg!(a! b! rect!)"), test.expected) << selector;
      EXPECT_EQ(toy.declared.size(), *test.expected ? 1U : 0U) << selector;
    }
  }
}

// Against a matcher that searches, over random trees and chains.
TEST(CssMatch, ChainsAgreeWithASearch) {
  struct Step {
    char combinator, name;
  };
  struct Search {
    static bool matches(const ToyNode *node, const std::vector<Step> &chain, size_t i) {
      const auto [combinator, name] = chain[i];
      if (!node || (name == 'x' ? node->class_nids.empty() : node->name[0] != name)) return false;
      if (i == 0) return true;
      do {
        node = combinator == '>' || combinator == ' ' ? node->parent : node->sibling;
        if (matches(node, chain, i - 1)) return true;
      } while (node && (combinator == ' ' || combinator == '~'));
      return false;
    }
  };
  std::mt19937 random(1);
  auto pick = [&random](size_t n) { return static_cast<size_t>(random() % n); };
  int matched = 0;
  for (int round = 0; round < 40; ++round) {
    AccountingCore core;
    Toy toy(core);
    std::vector<std::vector<Step>> chains(50);
    for (size_t i = 0; i < chains.size(); ++i) {
      std::string sheet;
      for (size_t steps = 1 + pick(5); steps > 0; --steps) {
        Step step = {" >+~"[pick(4)], "abcx"[pick(4)]};
        if (!sheet.empty()) sheet += step.combinator;
        sheet += step.name == 'x' ? ".x" : std::string(1, step.name);
        chains[i].push_back(step);
      }
      toy.parse(sheet + "{p:" + std::to_string(i) + "}");
    }
    std::string tree = "a(b";
    int depth = 1;
    for (int i = 0; i < 120; ++i) {
      const size_t move = pick(3);
      for (; move > 1 && depth > 1 && pick(2); --depth) tree += ')';
      depth += move == 0;
      tree += move == 0 ? '(' : ' ';
      tree += "abc"[pick(3)];
      if (pick(3) == 0) tree += ".x";
    }
    toy.build(tree);
    for (ToyNode &node : toy.nodes) {
      ort_vtr *rules = toy.ask(node);
      std::vector<bool> found(chains.size());
      for (size_t i = 0; i < ort_vtr_count(rules); ++i) {
        const auto *value =
            static_cast<std::string *>(ort_item<css_rule *>(rules, i)->decls->decl_values[0]);
        found[std::stoul(value->substr(2))] = true;
      }
      for (size_t i = 0; i < chains.size(); ++i) {
        bool expected = Search::matches(&node, chains[i], chains[i].size() - 1);
        ASSERT_EQ(found[i], expected) << "round " << round << " chain " << i << " in " << tree;
        matched += expected;
      }
    }
  }
  EXPECT_GT(matched, 3000);
}

// "a a a ... a b" over nested a: a search would try all choices of ancestors.
TEST(CssMatch, LongChainsCostNoMoreThanTheirLength) {
  AccountingCore core;
  Toy toy(core);
  std::string chain, tree;
  for (int i = 0; i < 300; ++i) chain += i % 2 ? "a ~ a " : "a > a ", tree += "a(a a(";
  toy.parse(chain + "b{p:1} c > " + chain + "b{p:2}");
  EXPECT_TRUE(toy.rules(tree + "b!") == chain + "b{p:1} ");
}

TEST(CssMatch, NamesPastTheNumbersNeverMatch) {
  AccountingCore core;
  Toy toy(core);
  std::string sheet;
  for (int i = 0; i < 33000; ++i)
    sheet += ".c" + std::to_string(i) + "{p:1}[a" + std::to_string(i) + "]{p:3}";
  toy.parse(sheet + ":not(.c32999){p:2}");
  ASSERT_EQ(core.messages.size(), 2U);
  EXPECT_EQ(core.messages[0].text, "Selectors use more than 32768 different class names");
  EXPECT_EQ(core.messages[1].text, "Selectors use more than 32768 different attribute names");
  EXPECT_EQ(css_get_class_nid(toy.css, "c32767"), 32767);
  EXPECT_EQ(css_get_class_nid(toy.css, "c32768"), -1);
  EXPECT_EQ(toy.rules("svg!.c32768.c32767"), ".c32767{p:1} ");
}

// What the last element of a tree takes: each part of the work counts, what has its bucket
// elsewhere or sleeps costs nothing, and the error comes where the steps end.
TEST(CssMatch, StepsHaveALimit) {
  auto many = [](const std::string &text, int count = 1000) {
    std::string all;
    for (int i = 0; i < count; ++i) {
      const size_t number = text.find('%');
      all += text;
      if (number != text.npos)
        all.replace(all.size() - text.size() + number, 1, "x" + std::to_string(i));
    }
    return all;
  };
  const std::string value = many("u", 64000), last = "a(b[k=" + value + "])", chain = many("a>");
  const struct {
    std::string sheet, tree;
    uint64_t steps;
  } cases[] = {
      {":root{p:1}", "svg", 7},
      {"a{p:1}#i{p:1}.x{p:1}[k]{p:1}[k=v]{p:1}", "svg(a#j.y[l=v]", 7}, // none but its own
      {"b.x{p:1}.x.y{p:1}b#i{p:1}*.z{p:1}b:root{p:1}", "svg(b.x", 14},
      {"a>b>c{p:1}a b c{p:1}a+c{p:1}d~c{p:1}c a>c{p:1}", "svg(a(b(c a(c) c", 162},
      {"a b{p:1}a>d,b+d,a~d,*{q:1}", "svg(a(b b b", 115},
      {"d *{p:1}d>*{p:1}d+*{p:1}d~*{p:1}d:root{p:1}", "svg(a(b b", 0}, // asleep
      {"a *{p:1}a>*{p:1}b+*{p:1}b~*{p:1}", "svg(a(b b", 194},
      {"a a{p:1}", last, 0},
      {"[k='" + value + "']{p:1}", last, 2007},
      {"b:not([k='" + value + "']){p:1}", last, 2003},
      {"[k^='" + value + "']{p:1}", last, 2007},
      {"[k$='" + value + "']{p:1}", last, 2007},
      {"[k|='" + value + "']{p:1}", last, 2007},
      {"[k~=v]{p:1}", last, 16002},
      {"[k*=v]{p:1}", last, 16002},
      {"[k='" + value + "v']{p:1}", last, 0},
      {many("b{p:1}"), "b", 5002},                      // matching rules
      {many("b.x{p:1}#i{q:1}b{r:1}"), "b.x#i", 111007}, // which are to be sorted
      {many("a [k^=%],") + "a{p:1}", "svg(a", 3043},    // sleepers
      {chain + "a{p:1}", many("a(") + "a", 38009},      // notes that are kept
      {many("a~[k^=%],") + "a{p:1}", "svg(a b", 3004},
  };
  for (const auto &test : cases) {
    uint64_t taken = 0;
    for (bool limited : {false, true}) {
      AccountingCore core;
      Toy toy(core);
      toy.parse(test.sheet);
      toy.build(test.tree);
      for (size_t i = 0; i + 1 < toy.nodes.size(); ++i) toy.ask(toy.nodes[i]);
      uint64_t before = toy.css->steps;
      if (limited) toy.css->steps += ORT_LIMIT_RULE_STEPS - before - taken + 1;
      toy.ask(toy.nodes.back());
      if (!limited) taken = toy.css->steps - before;
      if (limited && taken > 0)
        EXPECT_STREQ(ort_error_text(core), "Limit of 500000000 steps to match style rules exceeded")
            << test.sheet.substr(0, 40);
    }
    EXPECT_EQ(taken, test.steps) << test.sheet.substr(0, 40);
  }
}

TEST(CssMatch, AnElementWithoutParentBeginsADocument) {
  AccountingCore core;
  Toy toy(core);
  toy.parse("a b{p:1} a ~ b{p:2} a + b{p:3}");
  EXPECT_EQ(toy.rules("svg(a(c(d"), "");
  toy.parse("a c{p:4}"); // ends a document too
  EXPECT_EQ(toy.rules("svg(c! a(c!))"), "a c{p:4} ");
  EXPECT_EQ(toy.rules("svg(b! a b!)"), "a + b{p:3} a ~ b{p:2} ");
  EXPECT_EQ(toy.rules("b!(b!)"), "");
}
