#include "platform/text.h"
#include "qal/test_client.h"
#include "workbench/console/console.h"
#include "workbench/console/image_file.h"

namespace workbench {
namespace {

using platform::Wide;
using platform::WideOut;

/// What a verification or a comparison gives.
struct Outcome {
  WideOut name;
  WideOut messages;
  std::uint32_t runStatus = 0;
  qal::Status status = qal::kOk;
};

constexpr std::uint32_t kMalformed = 2;

qal::IQCoverageTestClient& TestClient(Console& console) {
  const auto clients =
      console.ide().Services().SinksAs<qal::IQCoverageTestClient>(qal::iid::kCoverageTestClient);
  if (clients.empty()) throw VerbError("the component offers no test client");
  return *clients.front();
}

std::string ImageVersion(qal::IQCoverageTestClient& client) {
  WideOut name;
  WideOut version;
  qal::Guid identifier;
  qal::IQTestImageSource* source = nullptr;
  std::uint32_t number = 0;
  client.GetClientInfo(name.put(), &identifier, &source, &number, version.put());
  return version.str();
}

std::string ReadImage(Console& console, const std::string& file) {
  return ReadImageFile(console.ide().PathFor(file), file, console.ide().OpenProject().Directory(),
                       ImageVersion(TestClient(console)));
}

/// Messages come in one text: "&" ends a line, "&&" an item. The lines of an item stand under its head.
void PrintMessages(Console& console, std::string_view messages) {
  constexpr std::string_view kItem = "Range ";
  while (!messages.empty()) {
    const std::size_t end = messages.find('&');
    const std::string line = platform::Trim(messages.substr(0, end));
    messages = end == std::string_view::npos ? std::string_view() : messages.substr(end + 1);
    if (!line.empty()) console.Print((line.starts_with(kItem) && line.ends_with(':') ? "" : "  ") + line);
  }
}

/// Says how a verification or comparison of `what` went. VerbError when it did not pass.
void Tell(Console& console, const Outcome& outcome, const std::string& what) {
  if (qal::Failed(outcome.status)) {
    throw VerbError(what + platform::Format(": the component refuses with 0x%08X",
                                            static_cast<std::uint32_t>(outcome.status)));
  }
  PrintMessages(console, outcome.messages.str());
  if (outcome.runStatus != 0) throw VerbError(what + ": " + outcome.name.str());
  console.Print("passed");
}

void RefuseMalformed(const std::string& file) {
  throw VerbError(file + " is malformed: a \"(\" has no \")\" behind it");
}

void OnImage(Console& console, Words& words) {
  WideOut image;
  if (qal::Failed(TestClient(console).GetImage(image.put()))) throw VerbError("there is no image");
  const std::string& directory = console.ide().OpenProject().Directory();
  if (words.Empty()) return console.Print(LinesOfImage(image.str(), directory));
  const std::string file = words.Take("the file");
  words.End();
  if (image.str().find('(') == std::string::npos)
    throw VerbError("nothing that is open is selected; test edit and test select choose what is");
  WriteImageFile(console.ide().PathFor(file), file, directory, image.str());
  console.Print("image written to " + file);
}

void OnVerify(Console& console, Words& words) {
  const std::string file = words.Take("the image's file");
  words.End();
  const std::string image = ReadImage(console, file);
  Outcome outcome;
  outcome.status = TestClient(console).Verify(Wide(image).get(), outcome.name.put(), outcome.messages.put(),
                                              &outcome.runStatus);
  if (outcome.runStatus == kMalformed) RefuseMalformed(file);
  Tell(console, outcome, file);
}

void OnCompare(Console& console, Words& words) {
  const std::string files[] = {words.Take("the first image's file"), words.Take("the second image's file")};
  words.End();
  const std::string images[] = {ReadImage(console, files[0]), ReadImage(console, files[1])};
  auto& client = TestClient(console);
  Outcome outcome;
  outcome.status = client.Compare(Wide(images[0]).get(), Wide(images[1]).get(), outcome.name.put(),
                                  outcome.messages.put(), &outcome.runStatus);
  if (outcome.runStatus == kMalformed) {
    qal::Flag unfinished = qal::kTrue;
    client.SetSelectionChecked(Wide(images[0]).get(), &unfinished);
    RefuseMalformed(files[unfinished ? 0 : 1]);
  }
  Tell(console, outcome, files[0] + " and " + files[1]);
}

void PrintSelection(Console& console) {
  WideOut text;
  TestClient(console).GetSelection(text.put());
  console.Print(text.str());
}

void OnSelect(Console& console, Words& words) {
  if (words.Empty())
    throw VerbError("the selection expected: test edit asks for it, or one like 1.011(src+main.c)");
  if (qal::Failed(TestClient(console).SetSelection(Wide(words.Rest()).get())))
    throw VerbError("the selection is refused");
  PrintSelection(console);
}

void OnSelection(Console& console, Words& words) {
  words.End();
  PrintSelection(console);
}

void OnEdit(Console& console, Words& words) {
  words.End();
  TestClient(console).EditSelection();
}

void OnInfo(Console& console, Words& words) {
  words.End();
  WideOut name;
  WideOut version;
  qal::Guid identifier;
  qal::IQTestImageSource* source = nullptr;
  std::uint32_t number = 0;
  TestClient(console).GetClientInfo(name.put(), &identifier, &source, &number, version.put());
  console.Print(name.str() + " " + version.str() + " " + GuidText(identifier) + " " + std::to_string(number));
}

void OnTest(Console& console, Words& words) {
  static constexpr struct {
    const char* name;
    void (*handler)(Console& console, Words& words);
  } kOperations[] = {{"edit", OnEdit},   {"select", OnSelect}, {"selection", OnSelection},
                     {"image", OnImage}, {"verify", OnVerify}, {"compare", OnCompare},
                     {"info", OnInfo}};
  const std::string what = words.Take("the operation");
  for (const auto& operation : kOperations) {
    if (SameWord(what, operation.name)) return operation.handler(console, words);
  }
  throw VerbError("test " + what + " is not known; help test lists what is");
}

constexpr Verb kVerbs[] = {
    {"test", "edit\nselect TEXT\nselection\nimage [FILE]\nverify FILE\ncompare FILE FILE\ninfo",
     "Chooses what coverage to check, writes it to an image file, checks it against such a file; fails when "
     "they differ.",
     OnTest},
};

}  // namespace

std::span<const Verb> TestVerbs() { return kVerbs; }

}  // namespace workbench
