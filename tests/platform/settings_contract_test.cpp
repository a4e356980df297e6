#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

#include "tests/platform/contract.hpp"
#include "tests/support/fake_platform.hpp"
#include "tests/support/faulty_platform.hpp"

namespace vorquill21 {
namespace {

class SettingsUnderTest {
 public:
  virtual ~SettingsUnderTest() = default;
  virtual Settings& Get() = 0;
};

class MemorySettingsUnderTest : public SettingsUnderTest {
 public:
  Settings& Get() override { return settings_; }

 private:
  test::MemorySettings settings_;
};

class FaultySettingsUnderTest : public MemorySettingsUnderTest {
 public:
  Settings& Get() override { return faulty_; }

 private:
  test::FaultPlan noFault_;
  test::FaultySettings faulty_{MemorySettingsUnderTest::Get(), noFault_};
};

class NativeSettingsUnderTest : public SettingsUnderTest {
 public:
  Settings& Get() override { return Platform::Native().GetSettings(); }
};

using Implementation = test::Implementation<std::unique_ptr<SettingsUnderTest>>;

template <typename UnderTest>
std::unique_ptr<SettingsUnderTest> Make() {
  return std::make_unique<UnderTest>();
}

class SettingsContractTest : public ::testing::TestWithParam<Implementation> {
 protected:
  // The store of the real system is that of all tests of the program: each has a section of its own.
  Text Get(TextView key) const { return settings_.Get(kApplication, section_, key, u"default"); }
  void Set(TextView key, TextView value) { settings_.Set(kApplication, section_, key, value); }

  static Text OtherApplication(TextView name) { return Text(kApplication).append(u" ").append(name); }

  static constexpr TextView kApplication = u"Vorquill21 Contract Tests";
  std::unique_ptr<SettingsUnderTest> underTest_ = GetParam().get();
  Settings& settings_ = underTest_->Get();
  Text section_ = u"Section " + FromUtf8(std::to_string(std::random_device()()));
};

TEST_P(SettingsContractTest, AMissingTextIsTheDefault) {
  EXPECT_EQ(Get(u"Key"), u"default");
  EXPECT_EQ(settings_.Get(u"Vorquill21 Has No Such Application", section_, u"Key", u""), u"");
  Set(u"Other", u"x");
  EXPECT_EQ(Get(u"Key"), u"default");
}

TEST_P(SettingsContractTest, AStoredTextComesBackUntilItIsReplaced) {
  Set(u"HeaderRow", u"1");
  Set(u"FirstValueRow", u"2");
  EXPECT_EQ(Get(u"HeaderRow"), u"1");
  Set(u"HeaderRow", u"17");
  EXPECT_EQ(Get(u"HeaderRow"), u"17");
  EXPECT_EQ(Get(u"FirstValueRow"), u"2");
}

TEST_P(SettingsContractTest, NamesMatchIgnoringCase) {
  Set(u"Key", u"x");
  EXPECT_EQ(settings_.Get(UpperCase(kApplication), UpperCase(section_), u"kEY", u""), u"x");
  Set(u"KEY", u"y");
  EXPECT_EQ(Get(u"Key"), u"y");
}

TEST_P(SettingsContractTest, SectionsAndApplicationsAreKeptApart) {
  const Text otherSection = section_ + u" b";
  settings_.Set(kApplication, section_, u"Key", u"1");
  settings_.Set(kApplication, otherSection, u"Key", u"2");
  settings_.Set(u"Vorquill21 Contract Tests 2", section_, u"Key", u"3");
  EXPECT_EQ(settings_.Get(kApplication, section_, u"Key", u""), u"1");
  EXPECT_EQ(settings_.Get(kApplication, otherSection, u"Key", u""), u"2");
  EXPECT_EQ(settings_.Get(u"Vorquill21 Contract Tests 2", section_, u"Key", u""), u"3");
}

TEST_P(SettingsContractTest, AnyTextSurvives) {
  const Text values[] = {u"",
                         u" ",
                         u"\t",
                         u" both ends ",
                         u"\r\n",
                         u"a\nb\rc",
                         u"a\\tb\\",
                         u"\\u0041",
                         u"=",
                         u"[Section]",
                         u"# text",
                         u"; text",
                         u"\"quoted\"",
                         u"\u00E4\u65E5",
                         u"\U0001F600",
                         Text(1, char16_t{0xD800}),
                         Text(1, char16_t{0xDC85}),
                         Text(10'000, u'x')};
  int number = 0;
  for (const Text& value : values) {
    const Text key = u"Key " + FromUtf8(std::to_string(number++));
    Set(key, value);
    EXPECT_EQ(Get(key), value) << ToUtf8(value);
  }
  number = 0;
  for (const Text& value : values) {
    EXPECT_EQ(Get(u"Key " + FromUtf8(std::to_string(number++))), value) << ToUtf8(value);
  }
}

TEST_P(SettingsContractTest, AnyNameServes) {
  for (const Text name : {u" Key ", u"a=b", u"[a]", u"#a", u";a", u"a\\b", u"a\tb", u"a/b", u"\u00C4\u65E5",
                          u"..", u"%41", u"A"}) {
    settings_.Set(kApplication, section_, name, name + u"1");
    settings_.Set(kApplication, section_ + name, u"Key", name + u"2");
    settings_.Set(OtherApplication(name), section_, u"Key", name + u"3");
    EXPECT_EQ(settings_.Get(kApplication, section_, name, u""), name + u"1") << ToUtf8(name);
    EXPECT_EQ(settings_.Get(kApplication, section_ + name, u"Key", u""), name + u"2") << ToUtf8(name);
    EXPECT_EQ(settings_.Get(OtherApplication(name), section_, u"Key", u""), name + u"3") << ToUtf8(name);
  }
}

INSTANTIATE_TEST_SUITE_P(Implementations, SettingsContractTest,
                         ::testing::Values(Implementation{"Memory", Make<MemorySettingsUnderTest>},
                                           Implementation{"FaultyWithoutFault",
                                                          Make<FaultySettingsUnderTest>},
                                           Implementation{"Native", Make<NativeSettingsUnderTest>}),
                         test::kNameOfImplementation);

}  // namespace
}  // namespace vorquill21
