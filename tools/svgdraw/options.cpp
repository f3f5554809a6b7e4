// options.cpp: the command line of svgdraw.
#include "tools/svgdraw/options.h"

#include <pango/pango.h>

#include <cmath>
#include <filesystem>
#include <set>
#include <tuple>

#include "tools/command_line.h"

namespace {

// The options as they are written.
struct Written {
  std::vector<std::string> paths;
  std::string format;
  std::string background = "none";
};

} // namespace

static std::string take(const Written &written, DrawOptions &options);
static std::string take_outputs(const Written &written, DrawOptions &options);
static std::string take_background(const std::string &text, double color[4]);

// What is wrong with the number of an option; "" when nothing is.
static std::string is_above_0(const std::string &text) {
  double number = 0;
  const bool is_number = CLI::detail::lexical_cast(text, number);
  return is_number && std::isfinite(number) && number > 0 ? "" : "a number above 0 is wanted";
}

int parse_draw_options(int argc, char **argv, DrawOptions &options) {
  CommandLine line("svgdraw",
                   "svgdraw draws SVG 1.1 drawings, plain or gzip, as PNG, PDF, PS or SVG.",
                   "Exit status: 0 all drawings were drawn, 1 some were not, 2 wrong usage.\n"
                   "The manual page svgdraw(1) tells more.");
  Written written;
  PictureSettings &picture = options.picture;
  line.app().set_help_flag("--help", "Print this help message and exit"); // -h is the height
  line.add("PATH", written.paths, " ",
           "IN OUT: a drawing and its picture, - for standard input and output; or drawings and "
           "the folder that their pictures go to");
  for (const auto &[name, number, argument, text] :
       {std::tuple("-w,--width", &picture.width, "PIXELS", "Width of the picture"),
        std::tuple("-h,--height", &picture.height, "PIXELS", "Height of the picture"),
        std::tuple("-s,--scale", &picture.scale, "FACTOR",
                   "Make the picture so many times as large"),
        std::tuple("-d,--dpi", &picture.dpi, "N", "Pixels of an inch (default 96)")})
    line.add(name, *number, argument, text)->check(is_above_0);
  line.add_flag("-a,--keep-aspect-ratio", picture.keep_aspect,
                "Fit the picture into --width and --height");
  line.add("-b,--background", written.background, "COLOR",
           "Color below the drawing (default none)");
  line.add("-f,--format", written.format, "FORMAT",
           "png, pdf, ps or svg (default: as the picture's name ends, else png)");
  line.add("-i,--id", picture.id, "ID", "Draw only the element with this id");
  line.add("--style-dir", options.reading.style_folder, "DIR",
           "Folder that style sheets may be read from (default: none are)");
  line.add_reading(options.reading, options.jobs,
                   {{"pixels", &picture.pixels}, {"painted", &picture.painted}});
  return line.parse(argc, argv, [&] { return take(written, options); });
}

// What is wrong with the command line; "" when it was taken.
static std::string take(const Written &written, DrawOptions &options) {
  PictureSettings &picture = options.picture;
  options.reading.external_sheets = !options.reading.style_folder.empty();
  picture.format = find_format(written.format);
  if (!picture.format && !written.format.empty())
    return "--format " + written.format + ": png, pdf, ps or svg is wanted";
  const std::string mistake = take_background(written.background, picture.background);
  return mistake.empty() ? take_outputs(written, options) : mistake;
}

static std::string take_outputs(const Written &written, DrawOptions &options) {
  namespace fs = std::filesystem;
  if (written.paths.size() < 2) return "a drawing and a picture are wanted";
  options.inputs.assign(written.paths.begin(), written.paths.end() - 1);
  const std::string &last = written.paths.back();
  const bool is_folder = fs::is_directory(last);
  if (!is_folder && options.inputs.size() > 1)
    return "'" + last + "' is no folder for several pictures";
  const PictureFormat *&format = options.picture.format;
  if (!format) {
    const std::string ending = is_folder ? "" : fs::path(last).extension().string();
    format = find_format(ending.empty() ? "png" : ending.substr(1));
    if (!format) return "'" + last + "' does not end in .png, .pdf, .ps or .svg";
  }
  std::set<fs::path> known;
  for (const std::string &input : options.inputs) {
    fs::path output = last;
    if (is_folder) {
      if (input == "-") return "the picture of standard input needs a name";
      output /= fs::path(input).filename();
      if (output.extension() == ".gz") output.replace_extension();
      output.replace_extension(format->name);
    }
    std::error_code error;
    if (fs::equivalent(input, output, error)) return "'" + input + "' is a drawing and its picture";
    if (!known.insert(output).second) return "several drawings for '" + output.string() + "'";
    options.outputs.push_back(output.string());
  }
  return "";
}

// A color as Pango reads it: a name of CSS, #rgb, #rrggbb, #rrggbbaa; none and transparent.
static std::string take_background(const std::string &text, double color[4]) {
  if (text == "none" || text == "transparent") return "";
  PangoColor parsed;
  guint16 alpha = 0;
  if (pango_color_parse_with_alpha(&parsed, &alpha, text.c_str()) == 0)
    return "--background " + text + ": no color";
  const guint16 parts[] = {parsed.red, parsed.green, parsed.blue, alpha};
  for (int i = 0; i < 4; ++i) color[i] = parts[i] / 65535.0;
  return "";
}
