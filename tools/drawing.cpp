// drawing.cpp: reads one drawing as any host does: a core, a file, a parser, and every call that
// may raise inside ort_protect.
#include "tools/drawing.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include "tools/protect.h"

static std::vector<const char *> texts(const std::vector<std::string> &strings) {
  std::vector<const char *> result;
  result.reserve(strings.size());
  for (const std::string &text : strings) result.push_back(text.c_str());
  return result;
}

Drawing::Drawing(std::string path, const ReadSettings &settings)
    : Drawing(std::move(path), settings, nullptr) {
  ort_options options;
  ort_options_init(&options);
  options.message = on_message;
  options.message_user = this;
  options.log = on_log;
  options.log_levels[ORT_LOG_READER] = static_cast<unsigned char>(settings.log_level);
  options.log_levels[ORT_LOG_LINES] = settings.log_level > 0 ? 1 : 0;
  options.memory_budget = settings.memory;
  options.inflate_budget = settings.inflated;
  core_ = ort_core_new(&options);
  if (!core_) {
    notes_.on_message(ORT_ERROR, ORT_E_NO_MEMORY, "Out of memory", {});
    return;
  }
  if (settings.external_sheets) {
    folder_ = !settings.style_folder.empty() ? settings.style_folder
                                             : std::filesystem::path(path_).parent_path().string();
    css_context_.base_folder = folder_.empty() ? "." : folder_.c_str();
  }
  if (path_ != "-" || read_standard_input()) read();
}

Drawing::Drawing(const Drawing &outer, const unsigned char *data, size_t size)
    : Drawing("embedded drawing", outer.settings_, outer.core_) {
  bytes_ = {reinterpret_cast<const char *>(data), size};
  read();
}

Drawing::Drawing(std::string path, const ReadSettings &settings, ort_core *outer)
    : path_(std::move(path)), name_(path_ == "-" ? "standard input" : path_), settings_(settings),
      notes_(settings.note_sources), refused_elements_(texts(settings.refused_elements)),
      refused_properties_(texts(settings.refused_properties)), core_(outer),
      is_embedded_(outer != nullptr), selected_(settings.selectors.size()) {}

Drawing::~Drawing() {
  if (!core_) return;
  svg_parser_delete(parser_);
  ort_gzclose(gz_);
  ort_fclose(file_);
  if (!is_embedded_) ort_core_delete(core_);
}

bool Drawing::read_standard_input() {
  char block[65536];
  for (size_t length;
       (length = fread(block, 1, sizeof block, stdin)) > 0 && input_.size() < ORT_LIMIT_MEMORY;)
    input_.append(block, length);
  bytes_ = input_;
  if (ferror(stdin) == 0) return true;
  const std::string text = "Cannot open file '" + name_ + "': " + strerror(errno);
  notes_.on_message(ORT_ERROR, ORT_E_OPEN, text.c_str(), {});
  return false;
}

void Drawing::read() {
  if (protect(core_, [this] { parse(); }) != 0)
    svg_ = nullptr;
  else
    note_waiting_links();
  notes_.finish();
}

// Runs inside ort_protect: no local with a destructor.
void Drawing::parse() {
  file_ = bytes_.data() ? ort_fopen_memory(core_, name_.c_str(), bytes_.data(), bytes_.size())
                        : ort_fopen(core_, path_.c_str());
  if (ort_is_gzip(file_)) gz_ = ort_gzopen(file_);
  svg_register_errtab(core_);
  parser_ =
      svg_parser_new(core_, settings_.font_number, name_.c_str(), &css_context_,
                     settings_.language.c_str(), refused_elements_.data(),
                     static_cast<int32_t>(refused_elements_.size()), refused_properties_.data(),
                     static_cast<int32_t>(refused_properties_.size()), nullptr, nullptr);
  svg_set_limits(parser_, &settings_.limits);
  svg_set_element_observer(parser_, on_element, this);
  svg_set_sheet_observer(parser_, on_sheet, this);
  svg_set_skip_observer(parser_, on_skip, this);
  if (!settings_.strict) {
    svg_set_leniency(parser_, SVG_LENIENT_ALL);
    svg_set_leniency_observer(parser_, on_leniency, this);
  }
  if (settings_.note_sources) svg_set_observer(parser_, on_value, this);
  for (size_t i = 0; i < selected_.size(); ++i)
    svg_set_selector(parser_, settings_.selectors[i].c_str(), on_selected, &selected_[i]);
  svg_ = svg_parse(parser_, file_, &gz_, &viewport_[0], &viewport_[1], &viewbox_[0], &viewbox_[1],
                   &elems_used_, &has_text_);
}

// Where the style sheet stands that is being read, if one is.
Place Drawing::sheet_place() const {
  Place place;
  if (parser_ && svg_get_sheet_place(parser_, &place.line, &place.column) == SVG_SHEET_STYLE)
    place.element = "style";
  return place;
}

void Drawing::note_waiting_links() {
  for (size_t i = 0; i < svg_get_unresolved_count(parser_); ++i) {
    const svg_iri *iri = nullptr;
    if (const char *name = svg_get_unresolved(parser_, i, &iri, nullptr)) waiting_[iri] = name;
  }
}

Source Drawing::source(const svg_e_node *element, const svg_a_node *value) const {
  const auto found = sources_.find({element, value});
  return found != sources_.end() ? found->second : Source{};
}

std::string source_text(const Drawing &drawing, const svg_e_node *element, const svg_a_node *value,
                        bool full) {
  const Source source = drawing.source(element, value);
  const std::string selector = source.selector ? short_text(*source.selector, full) : "";
  switch (source.kind) {
  case SVG_SOURCE_ATTRIBUTE: break;
  case SVG_SOURCE_SHEET: return "sheet: " + selector;
  case SVG_SOURCE_IMPORTANT: return "sheet, important: " + selector;
  case SVG_SOURCE_STYLE: return "style";
  case SVG_SOURCE_DEFAULT: return "default";
  }
  return "";
}

const char *Drawing::waiting_name(const svg_iri *iri) const {
  const auto found = waiting_.find(iri);
  return found != waiting_.end() ? found->second : nullptr;
}

std::string Drawing::font_name(const svg_font *font) const {
  ort_bs *text = nullptr;
  const int code = protect(core_, [&] {
    text = ort_bs_new(core_);
    svg_create_fontname(parser_, font, text);
  });
  std::string name = code == 0 ? ort_bs_text(text) : "";
  ort_bs_delete(text);
  return name;
}

bool Drawing::accepts_language(const svg_e_node *element) const {
  if ((element->head.flags & SVG_EF_SYSLANG) == 0) return true;
  bool accepted = false;
  protect(core_, [&] { accepted = svg_check_system_language(parser_, element) != 0; });
  return accepted;
}

void Drawing::on_message(void *user, ort_severity severity, int code, const char *text) {
  auto *drawing = static_cast<Drawing *>(user);
  drawing->notes_.on_message(severity, code, text, drawing->sheet_place());
}

void Drawing::on_log(void *, const char *text, size_t length) { fwrite(text, 1, length, stderr); }

void Drawing::on_element(void *user, const svg_e_node *element, uint32_t line,
                         const svg_written_attr *attributes, size_t count) {
  static_cast<Drawing *>(user)->notes_.on_element(element, line, attributes, count);
}

void Drawing::on_skip(void *user, svg_skipped what, const char *name, uint32_t line) {
  auto *drawing = static_cast<Drawing *>(user);
  drawing->notes_.on_skip(what, name, line, drawing->sheet_place());
}

void Drawing::on_sheet(void *user, const char *href) {
  auto *drawing = static_cast<Drawing *>(user);
  drawing->notes_.on_sheet(href, drawing->sheet_place());
}

void Drawing::on_leniency(void *user, const svg_lenient_value *value) {
  auto *drawing = static_cast<Drawing *>(user);
  drawing->notes_.on_leniency(*value, drawing->sheet_place());
}

void Drawing::on_value(void *user, const svg_e_node *element, const svg_a_node *value,
                       svg_source source, const char *selector) {
  auto *drawing = static_cast<Drawing *>(user);
  // A pass that begins again makes elements and the texts of rules, which stay in their places
  // otherwise, anew. The first value of a tree is one of the outermost element, which always has a
  // width, and comes before any selector is answered.
  if (!svg_get_parent(element)) {
    drawing->selector_texts_.clear();
    for (Elements &selected : drawing->selected_) selected.clear();
  }
  if (source == SVG_SOURCE_ATTRIBUTE) {
    // This value may lie where a replaced one lay, and a note about that one may remain.
    if (!drawing->sources_.empty()) drawing->sources_.erase({element, value});
    return;
  }
  Source noted = {source, nullptr};
  if (selector) {
    const std::string *&text = drawing->selector_texts_[selector];
    if (!text) text = &drawing->selectors_.try_emplace(selector).first->first;
    noted.selector = text;
  }
  drawing->sources_[{element, value}] = noted;
}

void Drawing::on_selected(void *user, const svg_e_node *element) {
  static_cast<Elements *>(user)->push_back(element);
}
