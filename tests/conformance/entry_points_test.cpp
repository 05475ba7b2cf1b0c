#include <gtest/gtest.h>

#include "tiny_ide.h"

// The five exports and the instance registry behind them.
namespace stranger {
namespace {

constexpr char kComponent[] = "{A8495747-DE13-11D3-8AF5-00AA0026624A}";

void* Key(std::uintptr_t value) { return reinterpret_cast<void*>(value); }

TEST(EntryPoints, OrdinalsNameTheSameFunctions) {
  struct Ordinal {
    std::uint32_t ordinal;
    const char* name;
    void* address;
  };
  TinyIde ide;
  const auto* table = static_cast<const Ordinal*>(ide.Export("QalExportOrdinals"));
  ASSERT_NE(table, nullptr);
  const char* names[] = {"LibraryRegister2", "QueryInterface2", "CreateInstance", "DestroyInstance",
                         "GetComponentVersion"};
  for (std::uint32_t i = 0; i < 5; ++i) {
    EXPECT_EQ(table[i].ordinal, i + 1);
    EXPECT_STREQ(table[i].name, names[i]);
    EXPECT_EQ(table[i].address, ide.Export(names[i]));
    EXPECT_NE(table[i].address, nullptr);
  }
  EXPECT_EQ(table[5].ordinal, 0u);
}

TEST(EntryPoints, TheVersionNeedsNoInstance) {
  TinyIde ide;
  std::uint32_t major = 9, minor = 9;
  EXPECT_EQ(ide.Enter("GetComponentVersion", &major, &minor), kOk);
  EXPECT_EQ(major, 1u);
  EXPECT_EQ(minor, 0u);
}

TEST(EntryPoints, RegistrationSucceedsWhateverTheRegistrarAnswers) {
  TinyIde ide;
  Object registrar;
  EXPECT_EQ(ide.Enter("LibraryRegister2", &registrar), kOk) << "one that refuses everything";
  registrar.Set(
      25, [](void*, const char16_t* name, std::uint32_t a, std::uint32_t b, std::uint32_t c, const Id* id) {
        const bool ours = *id == MakeId("{BBE21080-34D9-11D5-B7CE-00E029352378}");
        return TinyIde::Current().Note(ours ? "ours" : "of another", name, a, b, c);
      });
  EXPECT_EQ(ide.Enter("LibraryRegister2", &registrar), kOk);
  EXPECT_EQ(ide.TakeLog(), "ours Generic JEP Coverage 2 1 0\n");
}

TEST(EntryPoints, AnInstanceAnswersUntilItIsDestroyed) {
  TinyIde ide;
  Result status = 0;
  EXPECT_EQ(ide.QueryInterface2(Key(1), kComponent, &status), nullptr);
  EXPECT_EQ(status, kNoInterface);
  EXPECT_EQ(ide.Enter("CreateInstance", Key(1)), kOk);
  EXPECT_EQ(ide.Enter("CreateInstance", Key(0)), kOk) << "any value is a key";
  void* first = ide.QueryInterface2(Key(1), kComponent, &status);
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(status, kOk);
  EXPECT_NE(ide.QueryInterface2(nullptr, kComponent), first);
  EXPECT_EQ(ide.QueryInterface2(Key(1), "{01234567-89AB-CDEF-0123-456789ABCDEF}", &status), nullptr);
  EXPECT_EQ(status, kNoInterface);

  EXPECT_EQ(ide.Enter("DestroyInstance", Key(1)), kOk);
  EXPECT_EQ(ide.QueryInterface2(Key(1), kComponent, &status), nullptr);
  EXPECT_EQ(status, kNoInterface);
  EXPECT_NE(ide.QueryInterface2(nullptr, kComponent, &status), nullptr) << "the other one is left alone";
  EXPECT_EQ(ide.Enter("DestroyInstance", Key(1)), kOk) << "nothing is left to destroy";
  EXPECT_EQ(ide.Enter("DestroyInstance", Key(0)), kOk);
}

TEST(EntryPoints, EachInterfaceOfTheComponentAnswersTheSameTable) {
  TinyIde ide;
  ide.Enter("CreateInstance", Key(1));
  const struct {
    const char* asked;
    const char* same;  // the identifier of the interface that it answers with
  } rows[] = {
      {"{00000000-0000-0000-C000-000000000046}", "{A8495740-DE13-11D3-8AF5-00AA0026624A}"},
      {"{90EFE761-0B7C-11D6-8BC2-0004E2013C71}", "{A8495740-DE13-11D3-8AF5-00AA0026624A}"},
      {"{BBE21080-34D9-11D5-B7CE-00E029352378}", kComponent},
      {"{EFC5B7E3-AB99-4175-B2F4-DC7681A620A8}", "{EFC5B7E3-AB99-4175-B2F4-DC7681A620A8}"},
      {"{417F1D27-B5E8-498F-9CDC-19F84900B111}", "{417F1D27-B5E8-498F-9CDC-19F84900B111}"},
  };
  for (const auto& from : rows) {
    void* object = ide.QueryInterface2(Key(1), from.asked);
    ASSERT_NE(object, nullptr) << from.asked;
    EXPECT_EQ(Call<std::uint32_t>(object, 1), 1u) << "references are not counted";
    EXPECT_EQ(Call<std::uint32_t>(object, 2), 0u);
    for (const auto& row : rows) {
      EXPECT_EQ(Ask(object, row.asked), ide.QueryInterface2(Key(1), row.same)) << from.asked << row.asked;
    }
    EXPECT_EQ(Ask(object, "{7E75765A-6BE4-4EC5-99B1-DB0B95E0E40B}"), nullptr);
  }
  EXPECT_EQ(Call(ide.QueryInterface2(Key(1), "{A8495740-DE13-11D3-8AF5-00AA0026624A}"), 3, std::uintptr_t{5}),
            kOk);
  ide.Enter("DestroyInstance", Key(1));
}

}  // namespace
}  // namespace stranger
