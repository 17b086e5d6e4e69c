// The contents of a model file, read by its layout: records of 218 bytes, a count, a marker, limits of 12 bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/bytes.h"

namespace kalvex {

struct SavedParam {
  double value = 0, error = 0;
  unsigned adjustable = 0;
  double min = 0, max = 0;
  std::string name;
  unsigned useMin = 0, useMax = 0, coupling = 0;
};

struct SavedModel {
  SavedParam epsInf;
  std::vector<SavedParam> elements;  // row by row

  const SavedParam& At(int row, int column) const { return elements.at(static_cast<std::size_t>(3 * row + column)); }
};

inline constexpr std::size_t kSavedRecordSize = 218, kSavedLimitsSize = 12;

inline SavedParam SavedRecord(std::string_view bytes) {
  SavedParam param;
  ByteReader in(bytes);
  param.value = in.F64();
  param.error = in.F64();
  param.adjustable = in.U32();
  param.min = in.F64();
  param.max = in.F64();
  param.name = std::string(bytes.substr(36, 50));
  param.name.resize(std::min(param.name.find('\0'), param.name.size()));
  return param;
}

inline SavedModel SavedModelOf(const std::string& bytes) {
  const std::string_view view(bytes);
  SavedModel model;
  model.epsInf = SavedRecord(view.substr(0, kSavedRecordSize));
  const auto count = static_cast<std::size_t>(3 * ByteReader(view.substr(kSavedRecordSize)).I32());
  const std::string_view records = view.substr(kSavedRecordSize + 4);
  ByteReader limits(records.substr(count * kSavedRecordSize + 4));
  for (std::size_t i = 0; i < count; ++i) {
    model.elements.push_back(SavedRecord(records.substr(i * kSavedRecordSize, kSavedRecordSize)));
    model.elements.back().useMin = limits.U32();
    model.elements.back().useMax = limits.U32();
    model.elements.back().coupling = limits.U32();
  }
  return model;
}

}  // namespace kalvex
