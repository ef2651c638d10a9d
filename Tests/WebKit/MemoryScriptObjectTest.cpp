#include <gtest/gtest.h>

#include "WebKit/MemoryScriptObject.h"

namespace zelkon {
namespace {

TEST(MemoryScriptObject, ElementsEndInUndefined) {
  MemoryScriptObject array(ValueArray{Value(1), Value(), Value("x"), Value::undefined(), Value(true)});
  EXPECT_EQ(array.webScriptValueAtIndex(0), Value(1.0));
  EXPECT_FALSE(array.webScriptValueAtIndex(0).isInteger());  // pages have doubles only
  EXPECT_TRUE(array.webScriptValueAtIndex(1).isNull());
  EXPECT_EQ(array.webScriptValueAtIndex(2), Value("x"));
  EXPECT_TRUE(array.webScriptValueAtIndex(3).isUndefined());
  EXPECT_TRUE(array.webScriptValueAtIndex(4).isBoolean());
  EXPECT_TRUE(array.webScriptValueAtIndex(5).isUndefined());
  EXPECT_TRUE(array.webScriptValueAtIndex(SIZE_MAX).isUndefined());
  EXPECT_EQ(array.valueForKey("length"), Value(5.0));
}

TEST(MemoryScriptObject, MissingNullAndUndefinedPropertiesAreNull) {
  MemoryScriptObject object(ValueDictionary{{"a", Value(2.5)}, {"b", Value()}, {"c", Value::undefined()}});
  EXPECT_EQ(object.valueForKey("a"), Value(2.5));
  EXPECT_TRUE(object.valueForKey("b").isNull());
  EXPECT_TRUE(object.valueForKey("c").isNull());
  EXPECT_TRUE(object.valueForKey("d").isNull());
  EXPECT_TRUE(object.valueForKey("length").isNull());
  EXPECT_TRUE(object.webScriptValueAtIndex(0).isUndefined());
}

TEST(MemoryScriptObject, NestedArraysAndDictionariesAreObjects) {
  MemoryScriptObject array(ValueArray{ValueDictionary{{"key", Value("Rent")}}, ValueArray{Value(7.0)}});
  const auto entry = WebScriptObjectOf(array.webScriptValueAtIndex(0));
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->valueForKey("key"), Value("Rent"));
  const auto inner = WebScriptObjectOf(array.webScriptValueAtIndex(1));
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(inner->webScriptValueAtIndex(0), Value(7.0));
}

TEST(MemoryScriptObject, PropertiesCanBeSet) {
  MemoryScriptObject object(ValueDictionary{{"red", Value(1.0)}});
  object.setValue(0.25, "red");
  object.setValue(std::make_shared<MemoryScriptObject>(ValueArray{}), "list");
  EXPECT_EQ(object.valueForKey("red"), Value(0.25));
  EXPECT_NE(WebScriptObjectOf(object.valueForKey("list")), nullptr);
  EXPECT_EQ(object.content(), Value(ValueDictionary{{"red", Value(1.0)}}));
  EXPECT_EQ(object.changedProperties().size(), 2u);
  object.setValue(Value(), "red");
  EXPECT_TRUE(object.valueForKey("red").isNull());
}

TEST(MemoryScriptObject, MethodsGoToTheHandler) {
  MemoryScriptObject object;
  EXPECT_TRUE(object.callWebScriptMethod("f", {}).isNull());
  object.setMethodHandler([](std::string_view name, const ValueArray& arguments) {
    return Value(std::string(name) + arguments.at(0).string());
  });
  EXPECT_EQ(object.callWebScriptMethod("f", {Value("x")}), Value("fx"));
}

TEST(MemoryScriptObject, AMillionElementsAreReadWithoutCopies) {
  const Value array = ValueArray(1000000, Value(ValueDictionary{{"value", Value(2.0)}}));
  MemoryScriptObject object(array);
  double sum = 0;
  for (size_t i = 0;; ++i) {
    const Value element = object.webScriptValueAtIndex(i);
    if (element.isUndefined()) break;
    sum += WebScriptObjectOf(element)->valueForKey("value").doubleValue();
  }
  EXPECT_EQ(sum, 2000000);
  EXPECT_EQ(&object.content().array(), &array.array());
}

}  // namespace
}  // namespace zelkon
