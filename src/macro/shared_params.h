// Records of parameters that several commands share, and helpers for optional parameters.
#pragma once

#include <optional>
#include <string>

#include "macro/command.h"

namespace kalvex {

struct NoParams {
  static constexpr auto Describe() { return std::tuple(); }
};

struct PositionParams {
  std::optional<int> XPos, YPos;
  static constexpr auto Describe() {
    using P = PositionParams;
    return std::tuple(Param("XPos", &P::XPos), Param("YPos", &P::YPos));
  }
};

struct FileParams {
  std::optional<std::string> File;
  static constexpr auto Describe() { return std::tuple(Param("File", &FileParams::File, 200)); }
};

struct ModelNoParams {
  std::optional<int> ModelNo;
  static constexpr auto Describe() { return std::tuple(Param("ModelNo", &ModelNoParams::ModelNo)); }
};

struct ModelFileParams {
  std::optional<int> ModelNo;
  std::optional<std::string> File;
  static constexpr auto Describe() {
    using P = ModelFileParams;
    return std::tuple(Param("ModelNo", &P::ModelNo), Param("File", &P::File, 200));
  }
};

template <class T>
void SetIfGiven(T& field, const std::optional<T>& value) {
  if (value) field = *value;
}

inline void SetFlagIfGiven(bool& flag, std::optional<int> value) {
  if (value) flag = *value != 0;
}

inline std::optional<bool> FlagOf(std::optional<int> value) {
  return value ? std::optional(*value != 0) : std::nullopt;
}

// Moves a window if both coordinates are given. False if it stays where it is.
template <class P, class Window>
bool PlaceIfGiven(const P& p, Window& window) {
  if (!p.XPos || !p.YPos) return false;
  window.x = *p.XPos;
  window.y = *p.YPos;
  return true;
}

}  // namespace kalvex
