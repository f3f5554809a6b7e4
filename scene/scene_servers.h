// scene_servers.h: gradients and patterns with what they take from those that they refer to
// (SVG 1.1, 13.2 and 13.3).
//
// Each is looked at once for a scene, so that many shapes may share one, and many of them a long
// chain. All that takes memory raises ORT_E_NO_MEMORY.
#ifndef SCENE_SERVERS_H
#define SCENE_SERVERS_H

#include "scene/scene.h"

// What the places in svg_scene_server.values hold.
enum {
  SVG_SCENE_SERVER_X1 = 0, // of a linear gradient: x1 y1 x2 y2
  SVG_SCENE_SERVER_CX = 0, // of a radial one: cx cy r fx fy
  SVG_SCENE_SERVER_X = 0,  // of a pattern: x y width height
  SVG_SCENE_SERVER_UNITS = 5,
  SVG_SCENE_SERVER_TRANSFORM,
  SVG_SCENE_SERVER_SPREAD,
  SVG_SCENE_SERVER_CONTENT_UNITS,
  SVG_SCENE_SERVER_VIEWBOX,
  SVG_SCENE_SERVER_ASPECT,
  SVG_SCENE_SERVER_VALUES // their number
};

struct svg_scene_server {
  const svg_e_node *element;
  const svg_a_node *values[SVG_SCENE_SERVER_VALUES]; // null where the default holds
  const svg_e_node *content; // the first one of the chain that has stops or, of patterns, elements

  const svg_scene_stop *stops; // of content, once asked for
  size_t stop_count;
  bool has_stops; // it was asked

  bool is_known;          // else its chain is being followed
  uint32_t round;         // or was, when an error ended it
  svg_scene_server *from; // what led here meanwhile
};

// The server of a gradient or pattern; null for other elements. Warns of a circle when it is first
// met, and goes on without the reference that closes it.
svg_scene_server *svg_scene_find_server(svg_scene *scene, const svg_e_node *element);

// Computes the stops of a gradient.
void svg_scene_find_stops(svg_scene *scene, svg_scene_server *server);

// Frees all servers; part of svg_scene_delete.
void svg_scene_free_servers(svg_scene *scene);

#endif
