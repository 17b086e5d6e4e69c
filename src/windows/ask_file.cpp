#include "windows/ask_file.h"

#include "core/text.h"
#include "windows/desk.h"

namespace kalvex {

std::optional<std::string> AskFile(Desk& desk, const FileQuestion& question) {
  std::optional<std::string> file = desk.session.GetPlatform().AskFile(question, desk.fileFolder);
  if (!file || file->empty()) return std::nullopt;
  desk.fileFolder = DirectoryOf(*file);
  if (question.forSaving && FileNameOf(*file).find('.') == std::string_view::npos) {
    *file += '.';
    *file += question.defaultExtension;
  }
  return file;
}

}  // namespace kalvex
