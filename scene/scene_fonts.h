// scene_fonts.h: SVG fonts as text needs them: which glyph stands for which characters, how wide it
// is, and how two of them are kerned (SVG 1.1, chapter 20).
//
// A font is looked at once for a scene. What takes memory raises ORT_E_NO_MEMORY, what takes time
// counts as shown elements and raises ORT_E_LIMIT.
#ifndef SCENE_FONTS_H
#define SCENE_FONTS_H

#include "scene/scene.h"

struct svg_scene_glyph {
  const svg_e_node *element; // glyph or missing-glyph, or null: a font without the latter
  const char *unicode;       // the characters that it stands for; null: missing-glyph
  double advance;            // in the font's units, as all of its numbers
};

struct svg_scene_font {
  const svg_e_node *element;
  double units;            // of an em
  double origin[2];        // of its glyphs
  double ascent, descent;  // above and (positive) below the baseline
  double underline[2];     // position above the baseline, thickness
  svg_scene_font *next;    // of the scene
  svg_scene_glyph missing; // for characters without a glyph
  svg_scene_glyph *glyphs; // in document order
  uint32_t glyph_count;
  uint32_t *slots; // hash table of unicode texts: place of a glyph + 1, or 0
  uint32_t slot_count;
  size_t longest;           // bytes of the longest unicode text
  const svg_e_node **kerns; // hkern elements in document order
  size_t kern_count;
  struct {
    const svg_scene_glyph *left, *right;
    double kern;
  } known[256]; // kerned pairs, by hash
};

// The first of a style's families that is a font of the drawing; null when none is.
svg_scene_font *svg_scene_find_font(svg_scene *scene, const svg_scene_style *style);

// The glyph for the characters that a text of so many bytes, above 0, begins with: the first one in
// document order that fits (SVG 1.1, 20.4). length receives their bytes.
const svg_scene_glyph *svg_scene_find_glyph(svg_scene *scene, const svg_scene_font *font,
                                            const char *text, size_t size, size_t *length);

// By how much two glyphs are moved together.
double svg_scene_get_kern(svg_scene *scene, svg_scene_font *font, const svg_scene_glyph *left,
                          const svg_scene_glyph *right);

// Bytes of the character that a text of so many bytes, above 0, begins with; it is well-formed
// UTF-8.
size_t svg_scene_character_length(const char *text, size_t size);

// The code of the character that well-formed UTF-8 begins with.
uint32_t svg_scene_decode(const char *text);

// Frees all fonts; part of svg_scene_delete.
void svg_scene_free_fonts(svg_scene *scene);

#endif
