// Tests that run over the whole table of terms.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "terms/term_table.h"

namespace kalvex {

class EveryRecord : public testing::TestWithParam<const TermRecord*> {
 protected:
  const TermRecord& record() const { return *GetParam(); }
};

inline std::string NameOfCase(const testing::TestParamInfo<const TermRecord*>& info) {
  return "Code" + std::to_string(info.param->firstId);
}

}  // namespace kalvex
