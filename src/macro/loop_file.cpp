#include "macro/loop_file.h"

#include <algorithm>

#include "core/files.h"
#include "core/text.h"

namespace kalvex {
namespace {

constexpr std::size_t kMostOfALine = 999;

// The next line, including its line feed, or the longest piece that is read at a time.
std::string_view TakePiece(std::string_view& rest) {
  const std::size_t feed = rest.substr(0, kMostOfALine).find('\n');
  const std::size_t size = feed == std::string_view::npos ? std::min(kMostOfALine, rest.size()) : feed + 1;
  const std::string_view piece = rest.substr(0, size);
  rest.remove_prefix(size);
  return piece;
}

LoopRow RowOf(std::string_view line) {
  line = line.substr(0, line.find('\n'));
  LoopRow row;
  while (row.TokenCount() < kMaxLoopTokens) {
    const std::size_t start = line.find_first_not_of(' ');
    if (start == std::string_view::npos) break;
    line.remove_prefix(start);
    const std::string_view token = line.substr(0, line.find(' '));
    line.remove_prefix(token.size());
    std::string field(token.substr(0, kLoopTokenSize));
    field.resize(kLoopTokenSize, '\0');
    row.fields += field;
  }
  return row;
}

bool IsPlaceholder(std::string_view text, std::size_t i) {
  return text[i] == '%' && i + 1 < text.size() && text[i + 1] >= '1' && text[i + 1] <= '8';
}

std::string Resolved(std::string_view text, const LoopRow& row, std::size_t length) {
  std::string out;
  const std::size_t end = std::min(text.size(), length);
  for (std::size_t i = 0; i < end; ++i) {
    if (!IsPlaceholder(text, i)) {
      out += text[i];
      continue;
    }
    const auto column = static_cast<std::size_t>(text[++i] - '1');
    if (column < row.TokenCount()) out += LoopToken(row, column);
  }
  return std::string(CutToBytes(out, length));
}

}  // namespace

std::string_view LoopToken(const LoopRow& row, std::size_t column) {
  const std::string_view rest = std::string_view(row.fields).substr(column * kLoopTokenSize);
  return rest.substr(0, rest.find('\0'));
}

bool ReadLoopFile(const std::string& path, std::vector<LoopRow>& rows) {
  rows.clear();
  std::string text;
  if (!ReadTextFile(path, text)) return false;
  std::string_view rest = text;
  while (!rest.empty() && rows.size() < kMaxLoopRows) rows.push_back(RowOf(TakePiece(rest)));
  return !rows.empty();
}

void SubstituteLoopValues(const MacroCommand& command, const LoopRow& row, MacroBlock& block) {
  for (std::size_t i = 0; i < block.size(); ++i) {
    MacroSlot& slot = block[i];
    if (!slot.given) continue;
    const MacroParam& param = command.params[i];
    if (param.type == ParamType::kString) {
      slot.text = Resolved(slot.text, row, static_cast<std::size_t>(param.length));
    } else if (slot.loopColumn >= 0 && static_cast<std::size_t>(slot.loopColumn) < row.TokenCount()) {
      const std::string_view token = LoopToken(row, static_cast<std::size_t>(slot.loopColumn));
      if (param.type == ParamType::kInteger) slot.intValue = IntegerOf(token);
      if (param.type == ParamType::kReal) slot.realValue = RealOf(token);
    }
  }
}

}  // namespace kalvex
