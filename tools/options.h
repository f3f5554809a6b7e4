// options.h: the command line.
#ifndef TOOLS_OPTIONS_H
#define TOOLS_OPTIONS_H

#include <string>
#include <vector>

#include "tools/drawing.h"
#include "tools/selection.h"
#include "tools/tree_text.h"

struct Options {
  ReadSettings reading;
  TextOptions text;
  std::vector<std::string> files;
  bool no_external = false;
  int jobs = 1;

  // What to print: the whole document unless one of these says otherwise.
  bool check = false;
  bool simplify = false;
  bool schema = false;
  bool json = false;
  bool pretty = false;
  bool fonts = false;
  bool ids = false;
  bool links = false;
  bool stats = false;
  bool info = false;
  bool shapes = false;
  bool has_bbox = false;
  bool has_query = false;
  bool has_explain = false;
  bool has_path = false;
  bool explains_query = false; // --explain without an argument
  Selection query;
  std::string bbox_id; // "": that of the query, or the drawing
  Selection explained;
  std::string explain_property; // "": all
  std::string path;
  std::string extract_folder; // "": nothing
  bool force = false;

  bool asks() const { // a question, in place of the whole document
    return fonts || ids || links || stats || info || shapes || has_bbox || has_query ||
           has_explain || !extract_folder.empty();
  }
  // Whether the tree is printed, of the whole document or of what the query names.
  bool wants_tree() const { return has_query ? !shapes && !has_bbox && !explains_query : !asks(); }
};

// Returns the exit status, or -1 to go on.
int parse_options(int argc, char **argv, Options &options);

#endif
