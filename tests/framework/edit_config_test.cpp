// Each operation on each kind of node, there and not there.
#include "framework/datastore/apply.h"

#include <gtest/gtest.h>

#include "framework/documents/documents.h"
#include "small_model.h"

namespace yfw::test {
namespace {

struct Application {
  const char* name;
  const char* target;  // inside <top>; empty for nothing at all
  const char* edit;    // inside <top>
  std::string expected;
  Operation default_operation = Operation::merge;
};

void PrintTo(const Application& each, std::ostream* out) {
  *out << each.name;
}

std::string applied(const char* target, const std::string& edit, Operation default_operation) {
  return outcome_of([&] {
    Data data = *target == '\0' ? Data() : small_edit(on_top(target)).tree;
    const EditDocument document = small_edit(edit, default_operation);
    apply_edit(data, document.tree.get(), document.default_operation);
    return flat(data);
  });
}

class ApplyEdit : public testing::TestWithParam<Application> {};

TEST_P(ApplyEdit, Gives) {
  const Application& each = GetParam();
  EXPECT_EQ(applied(each.target, on_top(each.edit), each.default_operation), each.expected);
}

std::string missing(const char* below, const char* name) {
  return described({.tag = "data-missing",
                    .path = fmt::format("/small:top/{}", below),
                    .message = fmt::format("'{}' is not there to be deleted", name)});
}

std::string exists(const char* below, const char* name) {
  return described({.tag = "data-exists",
                    .path = fmt::format("/small:top/{}", below),
                    .message = fmt::format("'{}' is there already", name)});
}

std::string nothing_to_work_on(const char* below, const char* name) {
  return described({.tag = "data-missing",
                    .path = fmt::format("/small:top/{}", below),
                    .message = fmt::format("'{}' is not there, and the default operation creates nothing", name)});
}

std::string named(const testing::TestParamInfo<Application>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Leaves, ApplyEdit,
    testing::Values(
        Application{"MergeIntoNothing", "", "<a>1</a>", flat_top("<a>1</a>")},
        Application{"MergeNew", "<d>7</d>", "<a>1</a>", flat_top("<a>1</a><d>7</d>")},
        Application{"MergeOver", "<a>1</a>", "<a>2</a>", flat_top("<a>2</a>")},
        Application{"MergeSame", "<a>1</a>", "<a>1</a>", flat_top("<a>1</a>")},
        Application{"ReplaceNew", "<d>7</d>", "<a nc:operation='replace'>1</a>", flat_top("<a>1</a><d>7</d>")},
        Application{"ReplaceOver", "<a>1</a>", "<a nc:operation='replace'>2</a>", flat_top("<a>2</a>")},
        Application{"CreateNew", "", "<a nc:operation='create'>1</a>", flat_top("<a>1</a>")},
        Application{"CreateOver", "<a>1</a>", "<a nc:operation='create'>2</a>", exists("a", "a")},
        Application{"DeleteThere", "<a>1</a><d>7</d>", "<a nc:operation='delete'>1</a>", flat_top("<d>7</d>")},
        Application{"DeleteThereWithoutValue", "<a>1</a><d>7</d>", "<a nc:operation='delete'/>", flat_top("<d>7</d>")},
        Application{"DeleteThereWithAnotherValue", "<a>1</a><d>7</d>", "<a nc:operation='delete'>9</a>",
                    flat_top("<d>7</d>")},
        Application{"DeleteAbsent", "<d>7</d>", "<a nc:operation='delete'/>", missing("a", "a")},
        Application{"DeleteFromNothing", "", "<a nc:operation='delete'/>", missing("a", "a")},
        Application{"RemoveThere", "<a>1</a><d>7</d>", "<a nc:operation='remove'/>", flat_top("<d>7</d>")},
        Application{"RemoveAbsent", "<d>7</d>", "<a nc:operation='remove'/>", flat_top("<d>7</d>")},
        Application{"RemoveFromNothing", "", "<a nc:operation='remove'/>", ""},
        Application{"RemoveTheLast", "<a>1</a>", "<a nc:operation='remove'/>", ""},
        Application{"DefaultValuesCanBeSet", "<a>1</a>", "<d nc:operation='create'>5</d>",
                    flat_top("<a>1</a><d>5</d>")}),
    named);

INSTANTIATE_TEST_SUITE_P(
    LeafLists, ApplyEdit,
    testing::Values(Application{"UnionInOrder", "<w>b</w><w>a</w>", "<w>c</w><w>a</w><w>d</w>",
                                flat_top("<w>b</w><w>a</w><w>c</w><w>d</w>")},
                    Application{"DeleteOne", "<w>a</w><w>b</w>", "<w nc:operation='delete'>a</w>",
                                flat_top("<w>b</w>")},
                    Application{"DeleteAbsent", "<w>a</w>", "<w nc:operation='delete'>b</w>", missing("w[.='b']", "w")},
                    Application{"RemoveAbsent", "<w>a</w>", "<w nc:operation='remove'>b</w>", flat_top("<w>a</w>")},
                    Application{"CreateOver", "<w>a</w>", "<w nc:operation='create'>a</w>", exists("w[.='a']", "w")},
                    Application{"ReplaceOneEntryKeepsOthers", "<w>a</w>", "<w nc:operation='replace'>b</w>",
                                flat_top("<w>a</w><w>b</w>")}),
    named);

INSTANTIATE_TEST_SUITE_P(
    Containers, ApplyEdit,
    testing::Values(
        Application{"MergeKeepsOthers", "<np><x>1</x></np>", "<np><deep><y>2</y></deep></np>",
                    flat_top("<np><x>1</x><deep><y>2</y></deep></np>")},
        Application{"ReplaceDropsOthers", "<np><x>1</x></np>", "<np nc:operation='replace'><deep><y>2</y></deep></np>",
                    flat_top("<np><deep><y>2</y></deep></np>")},
        Application{"ReplaceByNothing", "<a>1</a><np><x>1</x></np>", "<np nc:operation='replace'/>",
                    flat_top("<a>1</a>")},
        Application{"RemovalBelowAReplace", "<a>1</a><np><x>1</x></np>",
                    "<np nc:operation='replace'><x nc:operation='remove'/></np>", flat_top("<a>1</a>")},
        Application{"DeletionBelowAReplace", "<np><x>1</x></np>",
                    "<np nc:operation='replace'><x nc:operation='delete'/></np>", missing("np/x", "x")},
        Application{"CreateBelowAReplace", "<np><x>1</x></np>",
                    "<np nc:operation='replace'><x nc:operation='create'>2</x></np>", flat_top("<np><x>2</x></np>")},
        Application{"CreateWhatIsEmpty", "", "<np nc:operation='create'><x>1</x></np>", flat_top("<np><x>1</x></np>")},
        Application{"CreateOver", "<np><x>1</x></np>", "<np nc:operation='create'/>", exists("np", "np")},
        Application{"DeleteThere", "<a>1</a><np><x>1</x></np>", "<np nc:operation='delete'/>", flat_top("<a>1</a>")},
        Application{"DeleteAbsent", "<a>1</a>", "<np nc:operation='delete'/>", missing("np", "np")},
        Application{"RemoveWithContentNamed", "<a>1</a><np><x>1</x></np>", "<np nc:operation='remove'><x>1</x></np>",
                    flat_top("<a>1</a>")},
        Application{"WithoutPresenceItGoesWhenEmpty", "<a>1</a><np><deep><y>1</y></deep></np>",
                    "<np><deep><y nc:operation='remove'/></deep></np>", flat_top("<a>1</a>")},
        Application{"EmptyInTheRequestIsNothing", "<a>1</a>", "<np/>", flat_top("<a>1</a>")},
        Application{"PresenceStaysWhenEmpty", "<pc><z>1</z></pc>", "<pc><z nc:operation='remove'/></pc>",
                    flat_top("<pc/>")},
        Application{"PresenceIsCreated", "", "<pc nc:operation='create'/>", flat_top("<pc/>")},
        Application{"PresenceExists", "<pc/>", "<pc nc:operation='create'/>", exists("pc", "pc")},
        Application{"InheritedCreateIsForAll", "<np><x>1</x></np>",
                    "<np><deep nc:operation='create'><y>1</y></deep></np>",
                    flat_top("<np><x>1</x><deep><y>1</y></deep></np>")}),
    named);

INSTANTIATE_TEST_SUITE_P(
    Entries, ApplyEdit,
    testing::Values(
        Application{"Merge", "<l><k>1</k><v>a</v></l>", "<l><k>1</k><w>b</w></l><l><k>2</k></l>",
                    flat_top("<l><k>1</k><v>a</v><w>b</w></l><l><k>2</k></l>")},
        Application{"ReplaceKeepsTheKey", "<l><k>1</k><v>a</v><w>b</w></l>",
                    "<l nc:operation='replace'><k>1</k><w>c</w></l>", flat_top("<l><k>1</k><w>c</w></l>")},
        Application{"ReplaceOneOnly", "<l><k>1</k><v>a</v></l><l><k>2</k><v>b</v></l>",
                    "<l nc:operation='replace'><k>2</k></l>", flat_top("<l><k>1</k><v>a</v></l><l><k>2</k></l>")},
        Application{"CreateNew", "<l><k>1</k></l>", "<l nc:operation='create'><k>2</k><v>a</v></l>",
                    flat_top("<l><k>1</k></l><l><k>2</k><v>a</v></l>")},
        Application{"CreateOver", "<l><k>1</k></l>", "<l nc:operation='create'><k>1</k></l>", exists("l[k='1']", "l")},
        Application{"Delete", "<l><k>1</k></l><l><k>2</k></l>", "<l nc:operation='delete'><k>1</k></l>",
                    flat_top("<l><k>2</k></l>")},
        Application{"DeleteAbsent", "<l><k>1</k></l>", "<l nc:operation='delete'><k>2</k></l>",
                    missing("l[k='2']", "l")},
        Application{"Inner", "<l><k>1</k><m><n>1</n><o>a</o></m></l>",
                    "<l><k>1</k><m><n>1</n><o nc:operation='delete'/></m><m><n>2</n></m></l>",
                    flat_top("<l><k>1</k><m><n>1</n></m><m><n>2</n></m></l>")},
        Application{"InnerDeleteInANewEntry", "", "<l><k>1</k><m nc:operation='delete'><n>1</n></m></l>",
                    missing("l[k='1']/m[n='1']", "m")},
        Application{"EntryAboveARemoveIsMade", "", "<l><k>1</k><v nc:operation='remove'/></l>",
                    flat_top("<l><k>1</k></l>")}),
    named);

INSTANTIATE_TEST_SUITE_P(
    DefaultOperations, ApplyEdit,
    testing::Values(
        Application{"NoneChangesNothing", "<a>1</a>", "<a>2</a>", flat_top("<a>1</a>"), Operation::none},
        Application{"NoneNeedsTheLeaf", "<d>7</d>", "<a>2</a>", nothing_to_work_on("a", "a"), Operation::none},
        Application{"NoneNeedsTheEntry", "<a>1</a>", "<l><k>1</k><v nc:operation='create'>a</v></l>",
                    nothing_to_work_on("l[k='1']", "l"), Operation::none},
        Application{"NoneNeedsNoContainer", "", "<np><x nc:operation='create'>1</x></np>",
                    flat_top("<np><x>1</x></np>"), Operation::none},
        Application{"NoneMakesNoContainer", "<a>1</a>", "<np/>", flat_top("<a>1</a>"), Operation::none},
        Application{"NoneLeavesDeeperOperations", "<l><k>1</k><v>a</v></l>",
                    "<l><k>1</k><v nc:operation='delete'/></l>", flat_top("<l><k>1</k></l>"), Operation::none},
        Application{"NoneMergesWhereToldTo", "<a>1</a>", "<np nc:operation='merge'><x>1</x></np>",
                    flat_top("<a>1</a><np><x>1</x></np>"), Operation::none},
        Application{"ReplaceReplacesTheWholeTop", "<a>1</a><l><k>1</k></l>", "<np><x>1</x></np>",
                    flat_top("<np><x>1</x></np>"), Operation::replace},
        Application{"ReplaceLeavesExplicitOperations", "<a>1</a><np><x>1</x></np>", "<a nc:operation='create'>2</a>",
                    flat_top("<a>2</a>"), Operation::replace}),
    named);

TEST(ApplyEdits, LeaveOtherTopsAlone) {
  const char* const other = "<config><other xmlns='urn:small'><b>1</b></other></config>";
  Data data = small_edit(other).tree;
  apply_edit(data, small_edit(on_top("<a>1</a>")).tree.get(), Operation::replace);
  EXPECT_EQ(flat(data), "<top xmlns=\"urn:small\"><a>1</a></top><other xmlns=\"urn:small\"><b>1</b></other>");
  apply_edit(data, small_edit(on_top("", "nc:operation='delete'")).tree.get(), Operation::merge);
  EXPECT_EQ(flat(data), "<other xmlns=\"urn:small\"><b>1</b></other>");
  EXPECT_EQ(applied("", on_top("", "nc:operation='delete'"), Operation::merge),
            described({.tag = "data-missing", .path = "/small:top", .message = "'top' is not there to be deleted"}));
}

// What only the model's defaults put there can be created, and cannot be deleted.
TEST(ApplyEdits, DoNotTakeDefaultsForData) {
  const auto with_defaults = [](const std::string& edit) {
    return outcome_of([&] {
      Data data = small_edit(on_top("<a>1</a>")).tree;
      EXPECT_EQ(lyd_validate_all(data.out(), nullptr, LYD_VALIDATE_PRESENT, nullptr), LY_SUCCESS);
      apply_edit(data, small_edit(on_top(edit)).tree.get(), Operation::merge);
      return flat(data);
    });
  };
  EXPECT_EQ(with_defaults("<d nc:operation='create'>6</d>"), flat_top("<a>1</a><d>6</d>"));
  EXPECT_EQ(with_defaults("<d>5</d>"), flat_top("<a>1</a><d>5</d>"));
  EXPECT_EQ(with_defaults("<d nc:operation='delete'/>"), missing("d", "d"));
  EXPECT_EQ(with_defaults("<np nc:operation='delete'/>"), missing("np", "np"));
  EXPECT_EQ(with_defaults("<np><x>1</x></np>"), flat_top("<a>1</a><np><x>1</x></np>"));
}

TEST(ApplyEdits, LeaveOpenIdentitiesAlone) {
  const std::string text =
      on_vlan("<ingress-mapping><config><tpid>TPID_ANY</tpid><vlan-id>5</vlan-id></config></ingress-mapping>");
  const EditDocument document = parse_edit(compact_models().get(), {text}, Operation::merge);
  Data data;
  apply_edit(data, document.tree.get(), Operation::merge);
  EXPECT_EQ(flat(data).find("tpid"), std::string::npos);
  EXPECT_NE(flat(data).find("<vlan-id>5</vlan-id>"), std::string::npos);
}

struct Drop {
  const char* name;
  const char* target;
  const char* edit;
  const char* left;  // inside <top>; null when nothing is left
  bool dropped;
};

void PrintTo(const Drop& each, std::ostream* out) {
  *out << each.name;
}

class DropAbsent : public testing::TestWithParam<Drop> {};

TEST_P(DropAbsent, Leaves) {
  const Drop& each = GetParam();
  EditDocument document = small_edit(on_top(each.edit));
  const Data target = small_edit(on_top(each.target)).tree;
  EXPECT_EQ(drop_absent_removes(document.tree, target, Operation::merge), each.dropped);
  EXPECT_EQ(flat(document.tree), each.left == nullptr ? "" : flat(small_edit(on_top(each.left)).tree));
}

INSTANTIATE_TEST_SUITE_P(
    Removes, DropAbsent,
    testing::Values(
        Drop{"AbsentLeaf", "<d>7</d>", "<a nc:operation='remove'/><d>8</d>", "<d>8</d>", true},
        Drop{"LeafThere", "<a>7</a>", "<a nc:operation='remove'/>", "<a nc:operation='remove'/>", false},
        Drop{"OnlyAbsent", "<d>7</d>", "<a nc:operation='remove'/>", nullptr, true},
        Drop{"Deletes", "<d>7</d>", "<a nc:operation='delete'/>", "<a nc:operation='delete'/>", false},
        Drop{"AncestorsWithoutPurpose", "<d>7</d>", "<a>1</a><np><deep><y nc:operation='remove'/></deep></np>",
             "<a>1</a>", true},
        Drop{"AncestorsWithOtherChildren", "<d>7</d>", "<np><x>1</x><deep><y nc:operation='remove'/></deep></np>",
             "<np><x>1</x></np>", true},
        Drop{"AncestorsWithAnOperation", "<d>7</d>", "<l nc:operation='merge'><k>1</k><v nc:operation='remove'/></l>",
             "<l nc:operation='merge'><k>1</k></l>", true},
        Drop{"ReplacesThatBringNothing", "<d>7</d>",
             "<np nc:operation='replace'><deep><y nc:operation='remove'/></deep></np>", nullptr, true},
        Drop{"ReplacesOfReplacesThatBringNothing", "<d>7</d>",
             "<np nc:operation='replace'><deep nc:operation='replace'><y nc:operation='remove'/></deep></np>", nullptr,
             true},
        Drop{"ReplacesAroundADelete", "<d>7</d>", "<np nc:operation='replace'><deep nc:operation='delete'/></np>",
             "<np nc:operation='replace'><deep nc:operation='delete'/></np>", false},
        Drop{"ReplacesAroundARemoveAndADelete", "<d>7</d>",
             "<np nc:operation='replace'><x nc:operation='remove'/><deep nc:operation='delete'/></np>",
             "<np nc:operation='replace'><deep nc:operation='delete'/></np>", true},
        Drop{"EntriesWithoutPurpose", "<l><k>1</k></l>", "<a>1</a><l><k>1</k><v nc:operation='remove'/></l>",
             "<a>1</a>", true},
        Drop{"EmptyAncestorsThatWereEmpty", "<d>7</d>", "<a>1</a><l><k>1</k></l>", "<a>1</a><l><k>1</k></l>", false},
        Drop{"EntryOfAList", "<l><k>1</k></l>",
             "<l nc:operation='remove'><k>1</k></l><l nc:operation='remove'><k>2</k></l>",
             "<l nc:operation='remove'><k>1</k></l>", true},
        Drop{"EntryOfALeafList", "<w>a</w>", "<w nc:operation='remove'>a</w><w nc:operation='remove'>b</w>",
             "<w nc:operation='remove'>a</w>", true},
        Drop{"BelowAReplaceNothingIsThere", "<np><x>1</x></np>",
             "<np nc:operation='replace'><x nc:operation='remove'/></np>", "<np nc:operation='replace'/>", true}),
    [](const testing::TestParamInfo<Drop>& info) { return info.param.name; });

}  // namespace
}  // namespace yfw::test
