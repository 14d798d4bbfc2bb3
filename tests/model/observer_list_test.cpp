#include "model/observer_list.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace model {
namespace {

using testing::ElementsAre;

/// Does what it was told at each announcement.
class Observer final : public AppModelObserver {
 public:
  explicit Observer(std::function<void(Property)> reaction) : reaction_(std::move(reaction)) {}
  void willChange(Property property) override { reaction_(property); }

 private:
  std::function<void(Property)> reaction_;
};

class ObserverListTest : public testing::Test {
 protected:
  std::function<void(Property)> note(std::string name) {
    return [this, name = std::move(name)](Property) { heard.push_back(name); };
  }

  ObserverList list;
  std::vector<std::string> heard;
};

TEST_F(ObserverListTest, TellsEveryObserverInTheOrderTheyCame) {
  Observer first(note("first"));
  Observer second(note("second"));
  list.add(first);
  list.add(second);

  list.announce(Property::dim);

  EXPECT_THAT(heard, ElementsAre("first", "second"));
}

TEST_F(ObserverListTest, NamesTheProperty) {
  std::vector<Property> properties;
  Observer observer([&](Property property) { properties.push_back(property); });
  list.add(observer);

  list.announce(Property::dim);
  list.announce(Property::glow);

  EXPECT_THAT(properties, ElementsAre(Property::dim, Property::glow));
}

TEST_F(ObserverListTest, WhoWasRemovedHearsNothing) {
  Observer observer(note("removed"));
  list.add(observer);

  list.remove(observer);
  list.remove(observer);
  list.announce(Property::dim);

  EXPECT_THAT(heard, ElementsAre());
}

TEST_F(ObserverListTest, AnObserverMayRemoveItselfWithoutAnotherMissingTheAnnouncement) {
  Observer first(note("first"));
  Observer leaving([&](Property) {
    heard.emplace_back("leaving");
    list.remove(leaving);
  });
  Observer last(note("last"));
  list.add(first);
  list.add(leaving);
  list.add(last);

  list.announce(Property::dim);
  list.announce(Property::dim);

  EXPECT_THAT(heard, ElementsAre("first", "leaving", "last", "first", "last"));
}

TEST_F(ObserverListTest, AnObserverRemovedByAnEarlierOneHearsNothingMore) {
  Observer removed(note("removed"));
  Observer remover([&](Property) { list.remove(removed); });
  list.add(remover);
  list.add(removed);

  list.announce(Property::dim);

  EXPECT_THAT(heard, ElementsAre());
}

TEST_F(ObserverListTest, WhoComesDuringAnAnnouncementHearsTheNextOne) {
  Observer late(note("late"));
  bool added = false;
  Observer adder([&](Property) {
    if (!std::exchange(added, true)) list.add(late);
  });
  list.add(adder);

  list.announce(Property::dim);
  EXPECT_THAT(heard, ElementsAre());

  list.announce(Property::dim);
  EXPECT_THAT(heard, ElementsAre("late"));
}

TEST_F(ObserverListTest, AnAnnouncementWithinAnotherReachesEveryoneOnce) {
  Observer first([&](Property property) {
    heard.emplace_back(property == Property::dim ? "first dim" : "first glow");
    if (property == Property::dim) list.announce(Property::glow);
  });
  Observer second([&](Property property) {
    heard.emplace_back(property == Property::dim ? "second dim" : "second glow");
    if (property == Property::glow) list.remove(first);
  });
  list.add(first);
  list.add(second);

  list.announce(Property::dim);

  EXPECT_THAT(heard, ElementsAre("first dim", "first glow", "second glow", "second dim"));
}

}  // namespace
}  // namespace model
