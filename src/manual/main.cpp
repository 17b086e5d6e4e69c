// Makes the manual: all pages of the documentation in one PDF, with the same bytes at each build. It uses Qt and no
// other folder.
//   kalvex_manual manual.pdf page.md ...
#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QPageSize>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>
#include <cstdio>

namespace {

// On paper a link to another page leads nowhere. Only its text is kept.
QString WithoutLinksToFiles(QString markdown) {
  static const QRegularExpression link(R"(\[([^\]]*)\]\((?!https?:)[^)]*\))");
  return markdown.replace(link, "\\1");
}

// Each page of the documentation starts on a new sheet.
void BreakBeforeTitles(QTextDocument& document) {
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    if (block.blockFormat().headingLevel() != 1 || block == document.begin()) continue;
    QTextBlockFormat format = block.blockFormat();
    format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    QTextCursor(block).setBlockFormat(format);
  }
}

void RuleTables(QTextFrame* frame) {
  for (QTextFrame* const child : frame->childFrames()) {
    if (auto* const table = qobject_cast<QTextTable*>(child)) {
      QTextTableFormat format = table->format();
      format.setBorderCollapse(true);
      format.setBorder(0.5);
      format.setBorderBrush(Qt::lightGray);
      format.setCellPadding(3);
      format.setCellSpacing(0);
      format.setTopMargin(4);
      format.setBottomMargin(8);
      table->setFormat(format);
    }
    RuleTables(child);
  }
}

// Qt offers no way to write a PDF without the time of its making. A fixed date of the same length takes its place.
void FixCreationDate(QByteArray& pdf) {
  const QByteArray key = "/CreationDate (D:", fixed = "20000101000000";
  const auto at = pdf.indexOf(key);
  if (at >= 0) pdf.replace(at + key.size(), fixed.size(), fixed);
}

}  // namespace

int main(int argc, char** argv) {
  const QGuiApplication application(argc, argv);
  if (argc < 3) return 2;
  QString markdown;
  for (int i = 2; i < argc; ++i) {
    QFile page(argv[i]);
    if (!page.open(QIODevice::ReadOnly)) {
      std::fprintf(stderr, "%s cannot be read\n", argv[i]);
      return 1;
    }
    markdown += WithoutLinksToFiles(QString::fromUtf8(page.readAll())) + "\n\n";
  }
  QTextDocument document;
  document.setDefaultFont(QFont("serif", 10));
  document.setMarkdown(markdown);
  BreakBeforeTitles(document);
  RuleTables(document.rootFrame());
  QBuffer pdf;
  pdf.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&pdf);
    writer.setTitle("Kalvex");
    writer.setPageSize(QPageSize(QPageSize::A4));
    document.print(&writer);
  }
  FixCreationDate(pdf.buffer());
  QFile file(argv[1]);
  return file.open(QIODevice::WriteOnly) && file.write(pdf.buffer()) == pdf.size() ? 0 : 1;
}
