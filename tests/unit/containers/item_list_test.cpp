#include "containers/item_list.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "text/byte_tables.h"

namespace zenfo {
namespace {

int alive = 0;

// A record with one text and a number.
class Note final : public Record {
 public:
  static constexpr RecordKind kKind = RecordKind::kReplaceValue;
  explicit Note(std::string n, uint32_t initial_state = 0)
      : name(std::move(n)) {
    state = initial_state;
    ++alive;
  }
  ~Note() override { --alive; }
  RecordKind kind() const override { return kKind; }
  std::optional<std::string_view> text(TextSlot slot) const override {
    return slot == TextSlot::kFirst ? std::optional<std::string_view>(name)
                                    : std::nullopt;
  }
  std::string name;
};

class Other final : public Record {
 public:
  RecordKind kind() const override { return RecordKind::kStringPair; }
};

const std::string& name_of(const Record* record) {
  return static_cast<const Note*>(record)->name;
}

int32_t by_name(const Record* a, const Record* b) {
  return compare_ignoring_case(name_of(a), name_of(b));
}

void fill(ItemList& list, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    ASSERT_EQ(list.append(std::make_unique<Note>(name)), 1);
  }
}

std::vector<std::string> names(ItemList& list) {
  std::vector<std::string> all;
  for (uint32_t i = 0; i < list.count(); ++i)
    all.push_back(name_of(list.get(i)));
  return all;
}

using Names = std::vector<std::string>;

std::vector<uint32_t> positions;
int32_t note_position(ProgressRecord* record) {
  positions.push_back(record->position);
  return 1;
}
int32_t stop(void*) { return 1; }

TEST(ItemList, AnswersRecordsByPositionAndNullAfterTheEnd) {
  ItemList list;
  EXPECT_EQ(list.get(0), nullptr);
  fill(list, {"a", "b", "c", "d", "e"});
  EXPECT_EQ(list.count(), 5u);
  EXPECT_EQ(names(list), (Names{"a", "b", "c", "d", "e"}));
  EXPECT_EQ(list.get(5), nullptr);
  EXPECT_EQ(list.get(UINT32_MAX), nullptr);
  // Any order, with and without an index.
  for (uint32_t i : {3u, 1u, 4u, 0u, 2u, 2u}) {
    EXPECT_EQ(name_of(list.get(i)), std::string(1, char('a' + i)));
  }
  EXPECT_TRUE(list.check());
}

TEST(ItemList, WalksBackwardsAndBackAndForthByPosition) {
  ItemList list;
  fill(list, {"a", "b", "c", "d"});
  for (uint32_t i : {3u, 2u, 1u, 0u, 1u, 2u, 1u}) {
    EXPECT_EQ(name_of(list.get(i)), std::string(1, char('a' + i)));
  }
}

TEST(ItemList, CursorWalkBeginsAtTheHeadFromNoCursor) {
  ItemList list;
  EXPECT_EQ(list.first(), nullptr);
  EXPECT_EQ(list.next(), nullptr);
  EXPECT_EQ(list.current(), nullptr);
  fill(list, {"a", "b"});
  EXPECT_EQ(name_of(list.current()), "b") << "Append moves the cursor";
  EXPECT_EQ(list.next(), nullptr);
  EXPECT_EQ(name_of(list.next()), "a");
  EXPECT_EQ(name_of(list.next()), "b");
  EXPECT_EQ(name_of(list.first()), "a");
}

TEST(ItemList, RemovalMovesTheCursorToTheFollowingRecord) {
  ItemList list;
  fill(list, {"a", "b", "c"});
  list.first();
  list.next();
  EXPECT_EQ(list.remove_current(), 1);
  EXPECT_EQ(name_of(list.current()), "c");
  EXPECT_TRUE(list.check());
  EXPECT_EQ(list.remove_current(), 1);
  EXPECT_EQ(list.current(), nullptr);
  EXPECT_EQ(list.remove_current(), 0);
  EXPECT_EQ(name_of(list.next()), "a") << "from no cursor";
  EXPECT_EQ(names(list), (Names{"a"}));
  EXPECT_EQ(list.remove_current(), 1);
  EXPECT_EQ(list.count(), 0u);
  EXPECT_TRUE(list.check());
}

TEST(ItemList, RemoveAtAnswersZeroAfterTheEnd) {
  ItemList list;
  EXPECT_EQ(list.remove_at(0), 0);
  fill(list, {"a", "b", "c", "d"});
  EXPECT_EQ(list.remove_at(4), 0);
  EXPECT_EQ(list.remove_at(1), 1);
  EXPECT_EQ(list.remove_at(1), 1);
  EXPECT_EQ(names(list), (Names{"a", "d"}));
  EXPECT_EQ(list.remove_at(1), 1);
  EXPECT_EQ(list.remove_at(0), 1);
  EXPECT_EQ(list.count(), 0u);
  EXPECT_TRUE(list.check());
}

TEST(ItemList, RemoveAtOnASortedListRemovesWhatGetAnswersAndLosesTheOrder) {
  ItemList list;
  fill(list, {"c", "a", "d", "b"});
  EXPECT_EQ(list.sort(0, by_name), 1);
  EXPECT_EQ(names(list), (Names{"a", "b", "c", "d"}));
  EXPECT_EQ(list.remove_at(1), 1);
  EXPECT_EQ(names(list), (Names{"c", "a", "d"}));
  EXPECT_TRUE(list.check());
}

TEST(ItemList, OwnsItsRecords) {
  alive = 0;
  {
    ItemList list;
    fill(list, {"a", "b", "c", "d"});
    EXPECT_EQ(alive, 4);
    list.remove_at(2);
    EXPECT_EQ(alive, 3);
    EXPECT_EQ(list.clear(), 1);
    EXPECT_EQ(alive, 0);
    EXPECT_EQ(list.count(), 0u);
    EXPECT_EQ(list.first(), nullptr);
    fill(list, {"e"});
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
}

TEST(ItemList, BuildingAnIndexAnswersZeroForAnEmptyList) {
  ItemList list;
  EXPECT_EQ(list.build_index(), 0);
  fill(list, {"b", "a"});
  EXPECT_EQ(list.build_index(), 1);
  EXPECT_EQ(names(list), (Names{"b", "a"}));
}

TEST(ItemList, SortLivesInTheIndexAndIsLostWithTheNextAppend) {
  ItemList list;
  fill(list, {"m", "c", "x"});
  EXPECT_EQ(list.sort(0, by_name), 1);
  EXPECT_EQ(names(list), (Names{"c", "m", "x"}));
  EXPECT_EQ(list.sort(5, by_name), 1);
  EXPECT_EQ(names(list), (Names{"x", "m", "c"}));
  fill(list, {"a"});
  EXPECT_EQ(name_of(list.get(0)), "m") << "the record appended first";
  EXPECT_EQ(names(list), (Names{"m", "c", "x", "a"}));
}

TEST(ItemList, CursorWalkOfASortedListFollowsTheLinks) {
  ItemList list;
  fill(list, {"b", "c", "a"});
  list.sort(0, by_name);
  EXPECT_EQ(name_of(list.first()), "b");
  EXPECT_EQ(name_of(list.next()), "c");
  EXPECT_EQ(name_of(list.get(1)), "b");
  EXPECT_EQ(name_of(list.next()), "c");
}

TEST(ItemList, SortRefusesFewerThanTwoRecordsAndNoComparator) {
  ItemList list;
  EXPECT_EQ(list.sort(0, by_name), -1);
  fill(list, {"b"});
  EXPECT_EQ(list.sort(0, by_name), -1);
  EXPECT_EQ(names(list), (Names{"b"}));
  fill(list, {"a"});
  EXPECT_EQ(list.sort(0, nullptr), -1);
}

TEST(ItemList, SortAnswersMinusOneWhenAComparatorFails) {
  ItemList list;
  fill(list, {"b", "a"});
  EXPECT_EQ(list.sort(0,
                      [](const Record*, const Record*) -> int32_t {
                        throw std::string("fault");
                      }),
            -1);
  EXPECT_EQ(list.count(), 2u);
}

TEST(ItemList, DescendingSortCopesWithTheSmallestAnswer) {
  ItemList list;
  fill(list, {"a", "b"});
  // Negating INT_MIN overflows, so both directions see "before".
  auto smallest = [](const Record*, const Record*) -> int32_t {
    return INT_MIN;
  };
  EXPECT_EQ(list.sort(1, smallest), 1);
  EXPECT_EQ(names(list), (Names{"a", "b"}));
}

void select(Record& record) { record.state = 1; }

TEST(ItemList, SelectDuplicatesMarksAllOfARunButTheFirst) {
  ItemList list;
  fill(list, {"A", "a", "B"});
  EXPECT_EQ(list.select_duplicates(by_name, select), 1);
  EXPECT_EQ(list.get(0)->state, 0u);
  EXPECT_EQ(list.get(1)->state, 1u) << "the one that the sort put second";
  EXPECT_EQ(list.get(2)->state, 0u);
}

TEST(ItemList, SelectDuplicatesRefusesWhatSortRefuses) {
  ItemList list;
  fill(list, {"a"});
  EXPECT_EQ(list.select_duplicates(by_name, select), -1);
  fill(list, {"a"});
  EXPECT_EQ(list.select_duplicates(nullptr, select), -1);
  EXPECT_EQ(list.select_duplicates(by_name, nullptr), -1);
  EXPECT_EQ(list.select_duplicates(by_name, select), 1);
}

void fill_states(ItemList& list, const std::vector<uint32_t>& states) {
  for (uint32_t state : states) {
    list.append(std::make_unique<Note>("n", state));
  }
}

std::vector<uint32_t> states(ItemList& list) {
  std::vector<uint32_t> all;
  for (uint32_t i = 0; i < list.count(); ++i) all.push_back(list.get(i)->state);
  return all;
}

using States = std::vector<uint32_t>;

TEST(SetState, TogglesAllWithAnyOtherStateBecomingZero) {
  ItemList list;
  fill_states(list, {0, 1, 5});
  EXPECT_EQ(list.set_state(-1, -1), 3);
  EXPECT_EQ(states(list), (States{1, 0, 0}));
}

TEST(SetState, SetsOneOrAll) {
  ItemList list;
  fill_states(list, {0, 0, 0});
  EXPECT_EQ(list.set_state(1, 1), 1);
  EXPECT_EQ(states(list), (States{0, 1, 0}));
  EXPECT_EQ(list.set_state(-1, 1), 3);
  EXPECT_EQ(states(list), (States{1, 1, 1}));
  EXPECT_EQ(list.set_state(2, 0), 1);
  EXPECT_EQ(states(list), (States{1, 1, 0}));
}

TEST(SetState, AnswersZeroForAnotherActionOnceTheRecordIsFound) {
  ItemList list;
  fill_states(list, {3});
  EXPECT_EQ(list.set_state(0, 2), 0);
  EXPECT_EQ(list.set_state(-1, 7), 0);
  EXPECT_EQ(states(list), (States{3}));
  EXPECT_EQ(list.set_state(1, 2), -1);
}

TEST(SetState, AnswersMinusOneForAMissingRecordAndZeroForAllOfNothing) {
  ItemList list;
  EXPECT_EQ(list.set_state(-1, 1), 0);
  EXPECT_EQ(list.set_state(0, 1), -1);
  EXPECT_EQ(list.set_state(-2, 1), -1);
  EXPECT_EQ(list.set_state(INT_MIN, 1), -1);
  EXPECT_EQ(list.set_state(INT_MAX, 1), -1);
}

TEST(SetState, AStopAnswersTheCountSoFar) {
  ItemList list;
  fill_states(list, States(500, 0));
  list.set_interrupt_hook(stop);
  // The counter is process-wide: a first stop aligns it.
  list.set_state(-1, 0);
  EXPECT_EQ(list.set_state(-1, 1), 101);
  EXPECT_EQ(list.get(100)->state, 1u);
  EXPECT_EQ(list.get(101)->state, 0u);
}

TEST(SetState, ReportsEverySecondOf250PositionsAndTheEnd) {
  ItemList list;
  fill_states(list, States(250, 0));
  list.set_report_hook(note_position);
  positions.clear();
  list.set_state(-1, 1);
  std::vector<uint32_t> expected;
  for (uint32_t i = 0; i <= 250; i += 2) expected.push_back(i);
  EXPECT_EQ(positions, expected);
}

TEST(ItemListCountState, CountsAStateOrAll) {
  ItemList list;
  fill_states(list, {0, 1, 5, 1, 0, 0});
  EXPECT_EQ(list.count_state(-1), 6);
  EXPECT_EQ(list.count_state(0), 3);
  EXPECT_EQ(list.count_state(1), 2);
  EXPECT_EQ(list.count_state(5), 1);
  EXPECT_EQ(list.count_state(2), 0);
  EXPECT_EQ(list.count_state(-2), -1);
  EXPECT_EQ(list.count_state(INT_MIN), -1);
}

TEST(ItemListCountState, AllIsAnsweredWithoutWalking) {
  ItemList list;
  fill_states(list, States(1000, 0));
  list.set_report_hook(note_position);
  positions.clear();
  EXPECT_EQ(list.count_state(-1), 1000);
  EXPECT_TRUE(positions.empty());
}

TEST(ItemListCountState, ReportsZeroBeforeItsFirstPoll) {
  ItemList list;
  fill_states(list, States(500, 1));
  list.set_interrupt_hook(stop);
  list.set_report_hook(note_position);
  list.count_state(1);  // The counter is the process's: leaves it at zero.
  for (int i = 0; i < 100; ++i) list.poll_interrupt();
  positions.clear();
  EXPECT_EQ(list.count_state(1), 1);
  EXPECT_EQ(positions, (std::vector<uint32_t>{0}));
}

TEST(ItemListCountState, ReportsFromZeroToTheCount) {
  ItemList list;
  fill_states(list, States(250, 1));
  list.set_report_hook(note_position);
  positions.clear();
  EXPECT_EQ(list.count_state(1), 250);
  std::vector<uint32_t> expected;
  for (uint32_t i = 0; i <= 250; i += 2) expected.push_back(i);
  EXPECT_EQ(positions, expected);
}

TEST(ItemListCountState, AStopAnswersTheCountSoFar) {
  ItemList list;
  fill_states(list, States(500, 1));
  list.set_interrupt_hook(stop);
  list.count_state(1);
  EXPECT_EQ(list.count_state(1), 101);
}

TEST(ItemList, WalksAMillionPositionsInLinearTimeWithoutAnIndex) {
  // In quadratic time this would take hours.
  ItemList list;
  for (int i = 0; i < 1000000; ++i) {
    list.append(std::make_unique<Other>());
  }
  uint64_t seen = 0;
  for (uint32_t i = 0; i < list.count(); ++i) seen += list.get(i) != nullptr;
  for (uint32_t i = list.count(); i-- > 0;) seen += list.get(i) != nullptr;
  EXPECT_EQ(seen, 2000000u);
}

TEST(RecordCast, AnswersNullForAnotherKind) {
  Other other;
  Note note("n");
  Record* record = &other;
  EXPECT_EQ(record_cast<Note>(record), nullptr);
  record = &note;
  EXPECT_EQ(record_cast<Note>(record), &note);
  EXPECT_EQ(record_cast<Note>(static_cast<Record*>(nullptr)), nullptr);
  EXPECT_FALSE(other.text(TextSlot::kFirst).has_value());
}

TEST(ItemList, ArrangesRecordsByAnOrderOverTheLinks) {
  ItemList list;
  fill(list, {"a", "b", "c"});
  const uint32_t order[] = {2, 0, 1};
  EXPECT_EQ(list.arrange(order), 1);
  EXPECT_TRUE(list.check());
  EXPECT_EQ(names(list), (Names{"c", "a", "b"}));
  EXPECT_EQ(list.arrange(order), 1) << "the links decide, not the order before";
  EXPECT_EQ(names(list), (Names{"c", "a", "b"}));
  EXPECT_TRUE(list.check());
  ASSERT_EQ(list.records().size(), 3u);
  EXPECT_EQ(name_of(list.records()[0]), "a");
  EXPECT_EQ(list.append(std::make_unique<Note>("d")), 1);
  EXPECT_EQ(names(list), (Names{"a", "b", "c", "d"})) << "lost like a sort";
}

TEST(ItemList, ArrangingFewerThanTwoRecordsAnswersMinusOne) {
  ItemList list;
  const uint32_t order[] = {0};
  EXPECT_EQ(list.arrange(order), -1);
  fill(list, {"a"});
  EXPECT_EQ(list.arrange(order), -1);
}

TEST(ItemList, CursorComesBackToAPlaceWhateverMovedIt) {
  ItemList list;
  fill(list, {"a", "b", "c", "d"});
  for (const bool indexed : {false, true}) {
    if (indexed) list.build_index();
    list.first();
    list.next();
    const ItemList::Place place = list.cursor_place();
    list.get(3);
    list.get(1);  // builds an index
    list.get(2);
    list.set_cursor(place);
    EXPECT_EQ(name_of(list.current()), "b");
    EXPECT_EQ(name_of(list.next()), "c");
    list.drop_index();
  }
  list.set_cursor(ItemList().cursor_place());
  EXPECT_EQ(list.current(), nullptr);
}

TEST(ItemList, MarksRepeatsOfAReference) {
  ItemList list;
  fill(list, {"a", "a", "b", "b", "b", "c"});
  std::vector<std::pair<uint32_t, uint32_t>> asked;
  const int32_t marked = list.mark_repeats(
      [&](uint32_t reference, uint32_t i) {
        asked.emplace_back(reference, i);
        return name_of(list.get(reference)) == name_of(list.get(i));
      },
      [](Record& record) { record.state = 7; });
  EXPECT_EQ(marked, 3);
  EXPECT_EQ(asked, (std::vector<std::pair<uint32_t, uint32_t>>{
                       {0, 1}, {0, 2}, {2, 3}, {2, 4}, {2, 5}}));
  EXPECT_EQ(list.count_state(7), 3);
}

}  // namespace
}  // namespace zenfo
