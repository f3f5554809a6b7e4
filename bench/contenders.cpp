// contenders.cpp: who reads the documents: bare Expat as the floor, this library, and the plain
// document trees that a host would build without it.
#include <expat.h>
#include <libxml/parser.h>
#include <malloc.h>
#include <pugixml.hpp>

#include <fstream>
#include <memory>

#include "bench/bench.h"
#include "scene/svg_scene.h"

// ---- Expat --------------------------------------------------------------------------------------

// One pass with handlers that do nothing, with namespaces, and in blocks as the reader reads them.
static bool expat_pass(const std::string &document) {
  constexpr size_t block = 8192;
  XML_Parser xml = XML_ParserCreateNS(nullptr, '*');
  XML_SetElementHandler(
      xml, [](void *, const XML_Char *, const XML_Char **) {}, [](void *, const XML_Char *) {});
  XML_SetCharacterDataHandler(xml, [](void *, const XML_Char *, int) {});
  XML_SetNamespaceDeclHandler(
      xml, [](void *, const XML_Char *, const XML_Char *) {}, [](void *, const XML_Char *) {});
  bool good = true;
  for (size_t at = 0; good && at < document.size(); at += block) {
    const size_t length = std::min(block, document.size() - at);
    good = XML_Parse(xml, document.data() + at, static_cast<int>(length),
                     at + length == document.size()) == XML_STATUS_OK;
  }
  XML_ParserFree(xml);
  return good;
}

template <int passes> static bool read_expat(const Documents &documents) {
  bool good = true;
  for (const std::string &document : documents)
    for (int i = 0; i < passes; ++i) good &= expat_pass(document);
  return good;
}

namespace {

// ---- The reader ---------------------------------------------------------------------------------

// One document under a core that may serve many. The input is in memory.
class Drawing {
public:
  Drawing(ort_core *core, const std::string &document) : core_(core), document_(&document) {
    good_ = ort_protect(
                core, [](void *self) { static_cast<Drawing *>(self)->parse(); }, this) == 0;
    ort_fclose(file_);
  }
  ~Drawing() { svg_parser_delete(parser_); }
  Drawing(const Drawing &) = delete;
  Drawing &operator=(const Drawing &) = delete;
  bool good() const { return good_; }

  // Walks over the tree once. False: the walk was ended by an error.
  bool walk() {
    return ort_protect(
               core_, [](void *self) { static_cast<Drawing *>(self)->paint(); }, this) == 0;
  }

private:
  void parse() {
    ort_gz *gz = nullptr;
    file_ = ort_fopen_memory(core_, "bench", document_->data(), document_->size());
    parser_ = svg_parser_new(core_, 0, "bench", nullptr, nullptr, nullptr, 0, nullptr, 0, nullptr,
                             nullptr);
    svg_ = svg_parse(parser_, file_, &gz, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  }

  void paint();

  ort_core *core_;
  const std::string *document_;
  ort_file *file_ = nullptr;
  svg_parser *parser_ = nullptr;
  svg_e_node *svg_ = nullptr;
  bool good_;
};

} // namespace

static ort_core *new_core() {
  ort_core *core = ort_core_new(nullptr);
  svg_register_errtab(core);
  return core;
}

static bool read_drawings(const Documents &documents) {
  bool good = true;
  ort_core *core = new_core();
  for (const std::string &document : documents) good &= Drawing(core, document).good();
  ort_core_delete(core);
  return good;
}

// ---- Walks --------------------------------------------------------------------------------------

template <class Record> static void count(void *painted, const Record *) {
  ++*static_cast<size_t *>(painted);
}

// A scene that a walk leaves by an error goes with its core.
void Drawing::paint() {
  constexpr svg_scene_callbacks callbacks = {count, count, count, count, count, nullptr};
  size_t painted = 0;
  svg_scene *scene = svg_scene_new(parser_, svg_, nullptr);
  svg_scene_paint_element(scene, nullptr, &callbacks, &painted);
  svg_scene_delete(scene);
}

namespace {

// The trees of documents, under one core.
class Trees {
public:
  explicit Trees(const Documents &documents) {
    for (const std::string &document : documents)
      drawings_.push_back(std::make_unique<Drawing>(core_.get(), document));
  }

  bool walk() {
    bool good = true;
    for (auto &drawing : drawings_) good &= drawing->walk();
    return good;
  }

private:
  std::unique_ptr<ort_core, decltype(&ort_core_delete)> core_{new_core(), ort_core_delete};
  std::vector<std::unique_ptr<Drawing>> drawings_;
};

} // namespace

std::function<bool()> make_walk(const Documents &documents) {
  return [trees = std::make_shared<Trees>(documents)] { return trees->walk(); };
}

// ---- Document trees -----------------------------------------------------------------------------

static bool read_libxml2(const Documents &documents) {
  bool good = true;
  for (const std::string &document : documents) {
    xmlDoc *tree = xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr,
                                 nullptr, XML_PARSE_HUGE | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    good &= tree != nullptr;
    xmlFreeDoc(tree);
  }
  return good;
}

static bool read_pugixml(const Documents &documents) {
  bool good = true;
  for (const std::string &document : documents)
    good &= static_cast<bool>(pugi::xml_document().load_buffer(document.data(), document.size()));
  return good;
}

// ---- Memory -------------------------------------------------------------------------------------

static double allocated() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

// A field of /proc/self/status, in bytes.
static double process_memory(const std::string &field) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;)
    if (word == field && status >> word) return std::stod(word) * 1024;
  return 0;
}

const Contender contenders[CONTENDERS] = {{"Expat, one pass", read_expat<1>},
                                          {"Expat, two passes", read_expat<2>},
                                          {"svgreader", read_drawings},
                                          {"libxml2 tree", read_libxml2},
                                          {"pugixml tree", read_pugixml}};

Memory measure_memory(const Documents &documents) {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5"; // the peak starts over
  const double before = allocated(), resident = process_memory("VmRSS:");
  ort_core *core = new_core();
  const double empty = allocated(); // a host has one core
  std::vector<Drawing *> drawings;
  drawings.reserve(documents.size());
  const double harness = allocated() - empty;
  for (const std::string &document : documents) drawings.push_back(new Drawing(core, document));
  const double handles = static_cast<double>(documents.size() * malloc_usable_size(drawings[0]));
  const Memory memory = {allocated() - before - harness - handles,
                         process_memory("VmHWM:") - resident};
  for (Drawing *drawing : drawings) delete drawing;
  ort_core_delete(core);
  return memory;
}
