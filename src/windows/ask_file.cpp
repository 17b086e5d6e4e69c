#include "windows/ask_file.h"

#include "core/text.h"

namespace kalvex {

std::optional<std::string> AskFile(Platform& platform, std::string& folder, const FileQuestion& question) {
  std::optional<std::string> file = platform.AskFile(question, folder);
  if (!file || file->empty()) return std::nullopt;
  folder = DirectoryOf(*file);
  if (question.forSaving && FileNameOf(*file).find('.') == std::string_view::npos) {
    *file += '.';
    *file += question.defaultExtension;
  }
  return file;
}

}  // namespace kalvex
