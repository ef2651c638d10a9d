#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Foundation/NSException.h"
#include "Foundation/Value.h"

namespace zelkon {
namespace {

class Thing : public Object {
 public:
  std::string className() const override { return "Thing"; }
};
class OtherThing : public Thing {};

template <typename Call>
std::string reasonOf(Call call, const std::string& name = NSInvalidArgumentException) {
  try {
    call();
  } catch (const NSException& exception) {
    EXPECT_EQ(exception.name(), name);
    return exception.reason();
  }
  return "nothing raised";
}

TEST(Value, KnowsItsKind) {
  EXPECT_TRUE(Value().isNull());
  EXPECT_TRUE(Value::undefined().isUndefined());
  EXPECT_TRUE(Value(true).isBoolean());
  EXPECT_FALSE(Value(true).isNumber());
  EXPECT_TRUE(Value(1.5).isNumber());
  EXPECT_TRUE(Value(1).isInteger());
  EXPECT_TRUE(Value("a").isString());
  EXPECT_TRUE(Value(ValueArray{}).isArray());
  EXPECT_TRUE(Value(ValueDictionary{}).isDictionary());
  EXPECT_TRUE(Value(std::make_shared<Thing>()).isObject());
  EXPECT_TRUE(Value(std::shared_ptr<Thing>()).isNull());
}

TEST(Value, DoubleValueReadsNumbersAndTexts) {
  EXPECT_EQ(Value(2.5).doubleValue(), 2.5);
  EXPECT_EQ(Value(3).doubleValue(), 3);
  EXPECT_EQ(Value(true).doubleValue(), 1);
  EXPECT_EQ(Value("12.5 EUR").doubleValue(), 12.5);
  EXPECT_EQ(Value("abc").doubleValue(), 0);
  EXPECT_EQ(Value().doubleValue(), 0);
}

TEST(Value, AKeyOfWhatHasNoKeysRaisesWithItsClassAndPlace) {
  const std::string reason = reasonOf([] { Value(5).raiseUndefinedKey("foo"); }, "NSUnknownKeyException");
  const std::string rest = "> valueForUndefinedKey:]: this class is not key value coding-compliant for the key foo.";
  EXPECT_EQ(reason.find("[<NSCFNumber 0x"), 0U) << reason;
  ASSERT_GT(reason.size(), rest.size());
  EXPECT_EQ(reason.substr(reason.size() - rest.size()), rest);
}

TEST(Value, DoubleValueOfAnythingElseRaises) {
  EXPECT_EQ(reasonOf([] {
              Value::undefined().doubleValue();
            }).find("-[WebUndefined doubleValue]: unrecognized selector sent to instance 0x"),
            0U);
  EXPECT_EQ(reasonOf([] { Value(ValueArray{}).doubleValue(); }).find("-[NSCFArray doubleValue]"), 0U);
  EXPECT_EQ(reasonOf([] { Value(std::make_shared<Thing>()).doubleValue(); }).find("-[Thing doubleValue]"), 0U);
}

TEST(Value, IntegerValueTruncatesAndClamps) {
  EXPECT_EQ(Value(2.9).integerValue(), 2);
  EXPECT_EQ(Value(-2.9).integerValue(), -2);
  EXPECT_EQ(Value(1e300).integerValue(), std::numeric_limits<int64_t>::max());
  EXPECT_EQ(Value(-1e300).integerValue(), std::numeric_limits<int64_t>::min());
  EXPECT_EQ(Value(std::nan("")).integerValue(), 0);
  EXPECT_EQ(Value(std::numeric_limits<int64_t>::max()).integerValue(), std::numeric_limits<int64_t>::max());
  EXPECT_EQ(Value("17x").integerValue(), 17);
  EXPECT_EQ(reasonOf([] { Value(ValueDictionary{}).integerValue(); }).find("-[NSCFDictionary integerValue]"), 0U);
}

TEST(Value, BoolValueReadsTexts) {
  for (const char* text : {"YES", "y", "true", "T", "1", " 005", "-7"}) EXPECT_TRUE(Value(text).boolValue()) << text;
  for (const char* text : {"NO", "", "0", "000", "false", "x1"}) EXPECT_FALSE(Value(text).boolValue()) << text;
  EXPECT_TRUE(Value(0.1).boolValue());
  EXPECT_FALSE(Value(0).boolValue());
  EXPECT_FALSE(Value().boolValue());
  EXPECT_EQ(reasonOf([] { Value::undefined().boolValue(); }).find("-[WebUndefined boolValue]"), 0U);
}

TEST(Value, LengthCountsUtf16Units) {
  EXPECT_EQ(Value("abc").length(), 3U);
  EXPECT_EQ(Value("é€").length(), 2U);
  EXPECT_EQ(Value("😀").length(), 2U);
  EXPECT_EQ(Value().length(), 0U);
}

TEST(Value, LengthOfAnythingElseRaises) {
  EXPECT_EQ(reasonOf([] { Value(5).length(); }).find("-[NSCFNumber length]: unrecognized selector sent to instance 0x"),
            0U);
  EXPECT_EQ(reasonOf([] { Value(true).length(); }).find("-[NSCFBoolean length]"), 0U);
  EXPECT_EQ(reasonOf([] { Value::undefined().length(); }).find("-[WebUndefined length]"), 0U);
  EXPECT_EQ(reasonOf([] { Value(ValueDictionary{}).length(); }).find("-[NSCFDictionary length]"), 0U);
}

TEST(Value, LooksKeysUp) {
  const Value dictionary(ValueDictionary{{"key", "a"}, {"value", 2}});
  EXPECT_EQ(dictionary.valueForKey("value"), Value(2));
  EXPECT_TRUE(dictionary.valueForKey("other").isNull());
  EXPECT_TRUE(Value().valueForKey("key").isNull());
}

TEST(Value, NumbersAreEqualByValue) {
  EXPECT_EQ(Value(1), Value(1.0));
  EXPECT_EQ(Value(1.0), Value(true));
  EXPECT_NE(Value(1), Value(2));
  EXPECT_NE(Value(1), Value("1"));
  EXPECT_NE(Value(0), Value());
  EXPECT_NE(Value(int64_t{9007199254740993}), Value(int64_t{9007199254740992}));
}

TEST(Value, ContainersAreEqualByContentAndObjectsByIdentity) {
  EXPECT_EQ(Value("a"), Value(std::string("a")));
  EXPECT_EQ(Value(ValueArray{1, "b"}), Value(ValueArray{1.0, "b"}));
  EXPECT_NE(Value(ValueArray{1}), Value(ValueArray{1, 2}));
  EXPECT_EQ(Value(ValueDictionary{{"k", 1}}), Value(ValueDictionary{{"k", 1.0}}));
  EXPECT_NE(Value(ValueDictionary{{"k", 1}}), Value(ValueDictionary{{"l", 1}}));
  const auto thing = std::make_shared<Thing>();
  EXPECT_EQ(Value(thing), Value(thing));
  EXPECT_NE(Value(thing), Value(std::make_shared<Thing>()));
  EXPECT_EQ(Value::undefined(), Value::undefined());
  EXPECT_NE(Value::undefined(), Value());
}

TEST(Value, GivesObjectsBackByType) {
  const auto thing = std::make_shared<OtherThing>();
  EXPECT_EQ(Value(thing).object<Thing>(), thing);
  EXPECT_EQ(Value(thing).object<OtherThing>(), thing);
  EXPECT_EQ(Value(std::make_shared<Thing>()).object<OtherThing>(), nullptr);
  EXPECT_EQ(Value(1).object(), nullptr);
}

TEST(Value, CopiesShareTheirContent) {
  const Value text("shared");
  const Value copy = text;
  EXPECT_EQ(text.sharedString(), copy.sharedString());
}

TEST(Value, DescribesItself) {
  EXPECT_EQ(Value().description(), "(null)");
  EXPECT_EQ(Value("text").description(), "text");
  EXPECT_EQ(Value(100.0).description(), "100");
  EXPECT_EQ(Value(0.1).description(), "0.1");
  EXPECT_EQ(Value(-2.5).description(), "-2.5");
  EXPECT_EQ(Value(1e30).description(), "1e+30");
  EXPECT_EQ(Value(1.5e-7).description(), "1.5e-07");
  EXPECT_EQ(Value(int64_t{9223372036854775807}).description(), "9223372036854775807");
  EXPECT_EQ(Value(true).description(), "1");
  EXPECT_EQ(Value(std::make_shared<Thing>()).description(), "<Thing>");
  EXPECT_EQ(Value(ValueArray{1, ValueDictionary{{"k", "v"}}}).description(),
            "(\n    1,\n    {\n        k = v;\n    }\n)");
}

}  // namespace
}  // namespace zelkon
