#include <gtest/gtest.h>

#include "scene/svg_scene.h"
#include "tests/support/accounting_core.h"

namespace {

// Something of all that the scene takes memory for.
constexpr char DRAWING[] = R"(<svg xmlns='http://www.w3.org/2000/svg'
  xmlns:xlink='http://www.w3.org/1999/xlink' width='9' height='9' viewBox='0 0 3 3'><defs>
  <linearGradient id='a' xlink:href='#b'/><linearGradient id='b' xlink:href='#a'>
  <stop stop-color='currentColor'/><stop offset='1'/></linearGradient>
  <pattern id='p' width='1' height='1'><path d='M0 0h1v1' fill='url(#a)'/></pattern>
  <clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='1' height='1' rx='.1'/></clipPath>
  <mask id='m'><circle r='2' fill='url(#p)'/></mask>
  <marker id='k' markerWidth='1' markerHeight='1'><path d='M0 0h1'/></marker>
  <symbol id='s' viewBox='0 0 1 1'><polyline points='0 0 1 1 2 0' marker-mid='url(#k)'/></symbol></defs>
  <g clip-path='url(#c)' stroke-dasharray='1 2 3'><use xlink:href='#s' width='2' height='2'/>
  <rect width='2' height='2' mask='url(#m)' fill='url(#p)' stroke='url(#a)'/></g>
  <path id='t' d='M0 0c1 1 2 1 3 0'/><text text-decoration='underline'>a <tspan dx='1'>b</tspan>
  <textPath xlink:href='#t'>c</textPath></text></svg>)";

struct Walk {
  svg_scene *scene;
  svg_scene_callbacks callbacks;
};

void begin_group(void *user, const svg_scene_group *group) {
  const auto *walk = static_cast<Walk *>(user);
  if (group->clip) svg_scene_paint_clip(walk->scene, group->clip, &walk->callbacks, user);
  if (group->mask) svg_scene_paint_mask(walk->scene, group->mask, &walk->callbacks, user);
}

void shape(void *user, const svg_scene_shape *shape) {
  const auto *walk = static_cast<Walk *>(user);
  for (const svg_scene_paint *paint : {&shape->fill, &shape->stroke})
    if (paint->pattern)
      svg_scene_paint_pattern(walk->scene, paint->pattern, &walk->callbacks, user);
}

double measure(void *, const svg_scene_run *run) { return static_cast<double>(run->length); }

void text(void *, const svg_scene_run *) {}

bool walk_once(AccountingCore &core) {
  ort_file *file = nullptr;
  svg_parser *parser = nullptr;
  Walk walk = {nullptr, {begin_group, nullptr, shape, nullptr, text, measure}};
  const int code = core.protect([&] {
    svg_register_errtab(core);
    file = ort_fopen_memory(core, "drawing", DRAWING, sizeof DRAWING - 1);
    parser =
        svg_parser_new(core, 0, "drawing", nullptr, "en", nullptr, 0, nullptr, 0, nullptr, nullptr);
    ort_gz *gz = nullptr;
    svg_e_node *svg =
        svg_parse(parser, file, &gz, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    walk.scene = svg_scene_new(parser, svg, nullptr);
    svg_scene_paint_element(walk.scene, nullptr, &walk.callbacks, &walk);
    double box[4];
    EXPECT_EQ(svg_scene_get_box(walk.scene, nullptr, nullptr, 1, box), 1);
  });
  svg_scene_delete(walk.scene);
  svg_parser_delete(parser);
  ort_fclose(file);
  return code == 0;
}

TEST(Scene, SurvivesEachFailingAllocation) { allocation_sweep(walk_once); }

} // namespace
