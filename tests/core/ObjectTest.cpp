#include "common/values/Object.h"

#include <gtest/gtest.h>

#include <array>

#include "common/values/Localized.h"
#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

template <class Use>
void ExpectUnknown(const Use& use, const std::string& name) {
  try {
    use();
    ADD_FAILURE() << name;
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 438) << name;
    EXPECT_NE(error.Text(Language::english).find(name), std::string::npos);
  }
}

TEST(Object, UnknownMembersAreNamedInTheError) {
  Object object;
  ExpectUnknown([&] { object.Get("Colour"); }, "Colour");
  ExpectUnknown([&] { object.Let("Colour", Variant(1)); }, "Colour");
  ExpectUnknown([&] { object.Call("Paint", {}); }, "Paint");
  ExpectUnknown([&] { object.Item(Variant(1)); }, "Item");
  ExpectUnknown([&] { object.Enumerate(); }, "_NewEnum");
  EXPECT_EQ(object.PropertyPages(), std::nullopt);
}

TEST(Collection, ItemIsAlsoAMethod) {
  Collection list;
  list.Add("a|1");
  const std::array<Variant, 1> first = {Variant(1)};
  EXPECT_EQ(list.Call("item", first), Variant("a|1"));
  ExpectUnknown([&] { list.Call("Item", {}); }, "Item");
  ExpectUnknown([&] { list.Call("Remove", first); }, "Remove");
}

TEST(Language, MessagesFollowTheChosenLanguage) {
  const Language before = UserLanguage();
  constexpr Localized kGreeting{"Guten Tag, {}", "Good day, {}"};
  UserLanguage(Language::english);
  EXPECT_EQ(Say(kGreeting, {"Ada"}), "Good day, Ada");
  UserLanguage(Language::german);
  EXPECT_EQ(Say(kGreeting, {"Ada"}), "Guten Tag, Ada");
  UserLanguage(before);
}

}  // namespace
}  // namespace kvo
