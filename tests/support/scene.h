// scene.h: scenes of drawings, and what they answer as text.
#ifndef TESTS_SUPPORT_SCENE_H
#define TESTS_SUPPORT_SCENE_H

#include <string>

#include "scene/svg_scene.h"
#include "tests/support/reader.h"

// The scene of a document that was read.
class Scene {
public:
  explicit Scene(const Document &document, const svg_scene_options *options = nullptr);
  ~Scene();
  Scene(const Scene &) = delete;
  Scene &operator=(const Scene &) = delete;
  operator svg_scene *() const { return scene_; }

  std::string size() const; // "WIDTH HEIGHT"

  // The computed value of a property ("stroke-width") of the element with an id: numbers with 6
  // digits, keywords, colors as #rrggbb, ids of links, "none" for none.
  std::string style(const std::string &id, const std::string &property) const;

  const Document &document;

private:
  svg_scene *scene_ = nullptr;
};

// A number with 6 significant digits; several with blanks between.
std::string short_number(double value);
std::string short_numbers(const double *values, size_t count);

// A color as #rrggbb, and the name of its extension when it has one.
std::string color_text(uint32_t rgb, const svg_color *color);

// The id of an element; "none" for null.
std::string id_text(const svg_parser *parser, const svg_e_node *element);

#endif
