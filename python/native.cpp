// The part of the Python module that is compiled: bases in, columns of repeats out.
//
// The search runs without the interpreter's lock. That is right, since all that it touches
// meanwhile is of C++ (the columns) or cannot change (the characters of a str or bytes, which the
// caller holds). A search that waits for another one does so without that lock, too, so the two
// never wait for each other.

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <quorix/quorix.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace py = pybind11;

namespace {

/// A column of figures, one for each repeat.
using Column = std::vector<std::int64_t>;

std::int64_t signed_of(std::uint64_t number) {
  return static_cast<std::int64_t>(number);
}

/// What a search has found, column by column.
struct Found {
  Column starts;
  Column ends;
  std::vector<std::string> units;
  Column unit_lengths;
  Column normalized_lengths;
  std::vector<std::int32_t> scores;
  std::vector<double> perfections;
  Column mismatches;
  Column insertions;
  Column deletions;
  Column n_counts;
  Column edit_offsets{0};
  Column edit_positions;
  std::vector<std::uint8_t> edit_kinds;
  std::vector<quorix::RepeatAlignment> alignments;

  void add(const quorix::Repeat& repeat, quorix::Detail detail) {
    starts.push_back(signed_of(repeat.start));
    ends.push_back(signed_of(repeat.end));
    units.push_back(repeat.unit);
    unit_lengths.push_back(signed_of(repeat.unit_length));
    normalized_lengths.push_back(signed_of(repeat.normalized_length));
    scores.push_back(repeat.score);
    perfections.push_back(repeat.perfection);
    mismatches.push_back(signed_of(repeat.mismatches));
    insertions.push_back(signed_of(repeat.insertions));
    deletions.push_back(signed_of(repeat.deletions));
    n_counts.push_back(signed_of(repeat.n_count));
    for (const quorix::RepeatEdit& edit : repeat.edits) {
      edit_positions.push_back(signed_of(edit.position));
      edit_kinds.push_back(static_cast<std::uint8_t>(edit.kind));
    }
    edit_offsets.push_back(signed_of(edit_positions.size()));
    if (detail == quorix::Detail::kAlignment) alignments.push_back(repeat.alignment);
  }
};

/// Returns an array that takes over the elements of `column`.
template <class Element>
py::array_t<Element> array_of(std::vector<Element>& column) {
  auto owned = std::make_unique<std::vector<Element>>(std::move(column));
  const py::capsule owner(owned.get(), [](void* block) {
    const std::unique_ptr<std::vector<Element>> elements(static_cast<std::vector<Element>*>(block));
  });
  const std::vector<Element>& elements = *owned.release();  // the capsule's from here on
  return py::array_t<Element>(static_cast<py::ssize_t>(elements.size()), elements.data(), owner);
}

/// Adds a property that hands a column over, once.
template <class Element>
void add_column(py::class_<Found>& type, const char* name, std::vector<Element> Found::*column) {
  type.def_property_readonly(name, [column](Found& found) { return array_of(found.*column); });
}

/// Returns the units as a list. Equal ones are one object: a genome has few different ones.
py::list list_of_units(const Found& found) {
  std::unordered_map<std::string_view, py::str> texts;
  py::list units(found.units.size());
  for (std::size_t i = 0; i < found.units.size(); ++i) {
    const std::string& unit = found.units[i];
    auto known = texts.find(unit);
    if (known == texts.end()) known = texts.emplace(unit, py::str(unit)).first;
    units[i] = known->second;
  }
  return units;
}

py::list list_of_alignments(const Found& found) {
  py::list alignments;
  for (const quorix::RepeatAlignment& alignment : found.alignments) {
    alignments.append(py::make_tuple(alignment.bases, alignment.marks, alignment.unit));
  }
  return alignments;
}

/// Returns the characters of a str or bytes, valid as long as that is. Other buffers may change
/// while they are searched, and are refused.
std::string_view characters_of(const py::object& text) {
  if (!py::isinstance<py::str>(text) && !py::isinstance<py::bytes>(text)) {
    throw py::type_error("the text has to be str or bytes");
  }
  return py::cast<std::string_view>(text);
}

std::unique_ptr<Found> find_repeats(const py::object& text,
                                    const quorix::SearchSettings& settings) {
  const std::string_view characters = characters_of(text);
  auto found = std::make_unique<Found>();
  const py::gil_scoped_release no_lock;
  quorix::find_repeats(characters, settings,
                       [&](const quorix::Repeat& repeat) { found->add(repeat, settings.detail); });
  return found;
}

std::unique_ptr<Found> find_repeats_with(
    const py::object& text, int mode, std::uint32_t min_unit_length, std::uint32_t max_unit_length,
    std::int32_t min_score, std::int32_t min_score_offset, float min_score_factor,
    std::int32_t min_length, std::int32_t min_length_offset, float min_length_factor,
    std::int32_t mismatch_score, std::int32_t indel_score, std::int32_t recursion_depth,
    std::int32_t max_score_reduction, std::int32_t max_successive_n, bool n_is_mismatch,
    bool removes_overlapping, int n_in_perfection, int unit_form, int detail) {
  quorix::SearchSettings settings;
  settings.mode = static_cast<quorix::SearchMode>(mode);
  settings.min_unit_length = min_unit_length;
  settings.max_unit_length = max_unit_length;
  settings.min_score = min_score;
  settings.min_score_offset = min_score_offset;
  settings.min_score_factor = min_score_factor;
  settings.min_length = min_length;
  settings.min_length_offset = min_length_offset;
  settings.min_length_factor = min_length_factor;
  settings.mismatch_score = mismatch_score;
  settings.indel_score = indel_score;
  settings.recursion_depth = recursion_depth;
  settings.max_score_reduction = max_score_reduction;
  settings.max_successive_n = max_successive_n;
  settings.n_is_mismatch = n_is_mismatch;
  settings.removes_overlapping = removes_overlapping;
  settings.n_in_perfection = static_cast<quorix::NInPerfection>(n_in_perfection);
  settings.unit_form = static_cast<quorix::UnitForm>(unit_form);
  settings.detail = static_cast<quorix::Detail>(detail);
  return find_repeats(text, settings);
}

/// Adds the exception for texts, which has a position besides its message.
void add_text_error(py::module_& module) {
  static py::handle text_error;
  text_error = py::exception<quorix::TextError>(module, "TextError", PyExc_ValueError).release();
  py::register_exception_translator([](std::exception_ptr error) {
    try {
      if (error) std::rethrow_exception(std::move(error));
    } catch (const quorix::TextError& refused) {
      const py::object raised = text_error(refused.what());
      raised.attr("position") = refused.position();
      PyErr_SetObject(text_error.ptr(), raised.ptr());
    }
  });
}

void add_found(py::module_& module) {
  py::class_<Found> type(module, "Found");
  add_column(type, "starts", &Found::starts);
  add_column(type, "ends", &Found::ends);
  type.def_property_readonly("units", &list_of_units);
  add_column(type, "unit_lengths", &Found::unit_lengths);
  add_column(type, "normalized_lengths", &Found::normalized_lengths);
  add_column(type, "scores", &Found::scores);
  add_column(type, "perfections", &Found::perfections);
  add_column(type, "mismatches", &Found::mismatches);
  add_column(type, "insertions", &Found::insertions);
  add_column(type, "deletions", &Found::deletions);
  add_column(type, "n_counts", &Found::n_counts);
  add_column(type, "edit_offsets", &Found::edit_offsets);
  add_column(type, "edit_positions", &Found::edit_positions);
  add_column(type, "edit_kinds", &Found::edit_kinds);
  type.def_property_readonly("alignments", &list_of_alignments);
}

}  // namespace

PYBIND11_MODULE(_native, module) {
  py::register_exception<quorix::SettingsError>(module, "SettingsError", PyExc_ValueError);
  add_text_error(module);
  add_found(module);
  module.def("find_repeats", &find_repeats_with, py::arg("text"), py::arg("mode"),
             py::arg("min_unit_length"), py::arg("max_unit_length"), py::arg("min_score"),
             py::arg("min_score_offset"), py::arg("min_score_factor"), py::arg("min_length"),
             py::arg("min_length_offset"), py::arg("min_length_factor"), py::arg("mismatch_score"),
             py::arg("indel_score"), py::arg("recursion_depth"), py::arg("max_score_reduction"),
             py::arg("max_successive_n"), py::arg("n_is_mismatch"), py::arg("removes_overlapping"),
             py::arg("n_in_perfection"), py::arg("unit_form"), py::arg("detail"));
  module.def("version", &quorix::version);
}
