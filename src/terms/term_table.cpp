#include "terms/term_table.h"

#include <algorithm>

namespace kalvex {

void ClearSlots(TermSlots& slots) {
  for (auto& record : slots.row) record.fill(kNoSlot);
}

void FillSlots(TermSlots& slots, std::int32_t code, int row) {
  for (std::size_t r = 0; r < kTermRecords; ++r) {
    const TermRecord& record = *TermTable[r];
    if (record.HasId(code)) slots.row[r][static_cast<std::size_t>(code - record.firstId)] = row;
  }
}

bool IsComplete(const TermSlots& slots, std::size_t record) {
  const auto first = slots.row[record].begin();
  return std::find(first, first + TermTable[record]->nIds, kNoSlot) == first + TermTable[record]->nIds;
}

}  // namespace kalvex
