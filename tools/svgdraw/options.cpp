// options.cpp: reads the command line with CLI11.
#include "tools/svgdraw/options.h"

#include <pango/pango.h>

#include <CLI/CLI.hpp>
#include <filesystem>

#include "tools/limits.h"
#include "tools/utf8.h"

namespace {

// The options as they are written.
struct Written {
  std::vector<std::string> paths;
  std::vector<std::string> limits;
  std::string format;
  std::string background = "none";
};

} // namespace

static void add_options(CLI::App &app, DrawOptions &options, Written &written);
static std::string take(const Written &written, DrawOptions &options);
static std::string take_outputs(const Written &written, DrawOptions &options);
static std::string take_background(const std::string &text, double color[4]);
static PictureFormat find_format(std::string name);

int parse_draw_options(int argc, char **argv, DrawOptions &options) {
  CLI::App app("svgdraw draws SVG 1.1 drawings, plain or gzip, as PNG, PDF, PS or SVG.", "svgdraw");
  app.set_version_flag("--version", "svgdraw " SVGREADER_VERSION);
  Written written;
  add_options(app, options, written);
  app.footer("Exit status: 0 all drawings were drawn, 1 some were not, 2 wrong usage.\n"
             "The manual page svgdraw(1) tells more.");
  std::string mistake;
  try {
    app.parse(argc, argv);
    mistake = take(written, options);
  } catch (const CLI::ParseError &error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    mistake = error.what();
  }
  if (mistake.empty()) return -1;
  fprintf(stderr, "svgdraw: %s\nRun svgdraw --help for more information.\n",
          escaped(mistake).c_str());
  return 2;
}

static void add_options(CLI::App &app, DrawOptions &options, Written &written) {
  app.set_help_flag("--help", "Print this help message and exit"); // -h is the height
  PictureSettings &picture = options.picture;
  const auto option = [&](const char *name, auto &value, const char *argument, const char *text) {
    return app.add_option(name, value, text)->option_text(argument);
  };
  option("PATH", written.paths, " ",
         "IN OUT: a drawing and its picture, - for standard input and output; or drawings and the "
         "folder that their pictures go to");
  option("-w,--width", picture.width, "PIXELS", "Width of the picture")->check(CLI::PositiveNumber);
  option("-h,--height", picture.height, "PIXELS", "Height of the picture")
      ->check(CLI::PositiveNumber);
  app.add_flag("-a,--keep-aspect-ratio", picture.keep_aspect,
               "Fit the picture into --width and --height");
  option("-s,--scale", picture.scale, "FACTOR", "Make the picture so many times as large")
      ->check(CLI::PositiveNumber);
  option("-d,--dpi", picture.dpi, "N", "Pixels of an inch (default 96)")
      ->check(CLI::PositiveNumber);
  option("-b,--background", written.background, "COLOR", "Color below the drawing (default none)");
  option("-f,--format", written.format, "FORMAT",
         "png, pdf, ps or svg (default: as the picture's name ends, else png)");
  option("-i,--id", picture.id, "ID", "Draw only the element with this id")
      ->each([&](const std::string &) { picture.has_id = true; });
  option("--language", options.reading.language, "TAG", "The user's language, for systemLanguage");
  app.add_flag("--strict", options.reading.strict, "Read as SVG 1.1 says, nothing leniently");
  option("--limit", written.limits, "NAME=N",
         "Set pixels, layers, expanded or a limit of svgtree (repeatable)")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  option("--jobs", options.jobs, "N", "Draw so many drawings at a time")->check(CLI::Range(1, 256));
}

// What is wrong with the command line; "" when it was taken.
static std::string take(const Written &written, DrawOptions &options) {
  PictureSettings &picture = options.picture;
  for (const std::string &limit : written.limits)
    if (std::string mistake = take_limit(
            limit, options.reading, {{"pixels", &picture.pixels}, {"layers", &picture.layers}});
        !mistake.empty())
      return mistake;
  if (!written.format.empty()) {
    picture.format = find_format(written.format);
    if (picture.format == PictureFormat::UNKNOWN)
      return "--format " + written.format + ": png, pdf, ps or svg is wanted";
  }
  if (std::string mistake = take_background(written.background, picture.background);
      !mistake.empty())
    return mistake;
  return take_outputs(written, options);
}

static std::string take_outputs(const Written &written, DrawOptions &options) {
  namespace fs = std::filesystem;
  if (written.paths.size() < 2) return "a drawing and a picture are wanted";
  options.inputs.assign(written.paths.begin(), written.paths.end() - 1);
  const std::string &last = written.paths.back();
  std::error_code error;
  PictureFormat &format = options.picture.format;
  if (fs::is_directory(last, error)) {
    if (format == PictureFormat::UNKNOWN) format = PictureFormat::PNG;
    static constexpr const char *endings[] = {"", ".png", ".pdf", ".ps", ".svg"};
    for (const std::string &input : options.inputs) {
      if (input == "-") return "the picture of standard input needs a name";
      fs::path name = fs::path(input).filename();
      if (name.extension() == ".gz") name.replace_extension();
      name.replace_extension(endings[static_cast<int>(format)]);
      options.outputs.push_back((fs::path(last) / name).string());
    }
    return "";
  }
  if (options.inputs.size() > 1) return "'" + last + "' is no folder for several pictures";
  options.outputs = {last};
  if (format == PictureFormat::UNKNOWN) {
    const std::string ending = fs::path(last).extension().string();
    format = find_format(ending.empty() ? "png" : ending.substr(1));
    if (format == PictureFormat::UNKNOWN)
      return "'" + last + "' does not end in .png, .pdf, .ps or .svg";
  }
  if (fs::equivalent(options.inputs[0], last, error)) return "'" + last + "' is the drawing itself";
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

static PictureFormat find_format(std::string name) {
  static constexpr struct {
    const char *name;
    PictureFormat format;
  } formats[] = {{"png", PictureFormat::PNG},
                 {"pdf", PictureFormat::PDF},
                 {"ps", PictureFormat::PS},
                 {"svg", PictureFormat::SVG}};
  for (char &c : name)
    if (c >= 'A' && c <= 'Z') c += 'a' - 'A';
  for (const auto &entry : formats)
    if (name == entry.name) return entry.format;
  return PictureFormat::UNKNOWN;
}
