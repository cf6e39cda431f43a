// Moving and renumbering when the catalogue's storage fails under it.
#include <gtest/gtest.h>

#include <list>
#include <string>

#include "fileman/organise_test_helpers.h"
#include "support/fault_injection.h"
#include "support/stdout_capture.h"
#include "zansong/fileman/order.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

class OrderFaultTest : public OrganiseTest {
 protected:
  void SetUp() override {
    OrganiseTest::SetUp();
    InstallCatalogueShim();
    AddAlbum(1, "A");
    AddSong(1, 1, "A/1.mid", "", "s", 1);
    AddSong(2, 1, "A/2.mid", "", "s", 3);
    AddSong(3, 1, "A/3.mid", "", "s", 5);
  }
  std::string Orders() {
    std::string orders;
    for (const std::string& row : Rows("SELECT disp_order FROM song ORDER BY song_id")) {
      orders += row + " ";
    }
    return orders;
  }
};

TEST_F(OrderFaultTest, AMoveThatCannotBeWrittenIsAFailedOrderChange) {
  std::list<int> ids{3};
  StdoutCapture quiet;
  FaultArm full(FaultTarget::kCatalogue, 1);
  EXPECT_EQ(kResultNoFile, FH_sort(root_.c_str(), ids, "s", 1, 0));
  quiet.Finish();
  EXPECT_EQ("1 3 5 ", Orders());
}

TEST_F(OrderFaultTest, ARenumberingThatCannotBeWrittenGivesMinusOne) {
  StdoutCapture quiet;
  FaultArm full(FaultTarget::kCatalogue, 1);
  EXPECT_EQ(kResultRenameDbFail, FH_reorder(root_.c_str(), 1, "s"));
  quiet.Finish();
  EXPECT_EQ("1 3 5 ", Orders());
}

}  // namespace
}  // namespace zansong_test
