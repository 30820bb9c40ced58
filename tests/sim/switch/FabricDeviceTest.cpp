// The fabric device of the simulated switch behind fab_ioctl: commands recorded in order, the
// VLANs left tx-disabled, what it refuses, and the fatal paths of fab_ioctl driven through it.
#include <gtest/gtest.h>

#include <fcntl.h>

#include <cerrno>
#include <string>
#include <vector>

#include "platform/shim/FabIoctl.h"
#include "sim/switch/SimSwitch.h"

namespace SimSwitchTest {
namespace {

using Sim::SimFabricDevice;

class FabricDeviceTest : public ::testing::Test {
 protected:
   Sim::SimSwitch sw;
   SimFabricDevice& fabric = sw.fabricDevice();
};

TEST_F( FabricDeviceTest, CommandsAreRecordedAndVlansFollowThem ) {
   EXPECT_EQ( &fabric, &Shim::fabricDevice() );
   Shim::fab_ioctl( "vlantxdisable %u 1", 100u );
   Shim::fab_ioctl( "vlantxdisable %u 1", 200u );
   EXPECT_TRUE( fabric.vlanTxDisabled( 100 ) );
   EXPECT_TRUE( fabric.vlanTxDisabled( 200 ) );
   Shim::fab_ioctl( "vlantxdisable %u 0", 100u );
   EXPECT_FALSE( fabric.vlanTxDisabled( 100 ) );
   EXPECT_EQ( ( std::set<U16>{ 200 } ), fabric.txDisabledVlans() );
   EXPECT_EQ( ( std::vector<std::string>{ "vlantxdisable 100 1", "vlantxdisable 200 1",
                                          "vlantxdisable 100 0" } ),
              fabric.commands() );
   EXPECT_FALSE( fabric.isOpen() );
}

TEST_F( FabricDeviceTest, RefusesWhatTheDriverWouldNot ) {
   EXPECT_EQ( -1, fabric.open( "/dev/other", O_RDWR ) );
   EXPECT_EQ( ENOENT, errno );
   char command[] = "vlantxdisable 100 1";
   EXPECT_EQ( -1, fabric.ioctl( SimFabricDevice::kFd, Shim::fabIoctlRequest, command ) );
   EXPECT_EQ( EBADF, errno );  // not open

   ASSERT_EQ( SimFabricDevice::kFd, fabric.open( Shim::fabDevicePath, O_RDWR ) );
   EXPECT_EQ( -1, fabric.open( Shim::fabDevicePath, O_RDWR ) );
   EXPECT_EQ( EBUSY, errno );
   EXPECT_EQ( -1, fabric.ioctl( SimFabricDevice::kFd, 1, command ) );
   EXPECT_EQ( ENOTTY, errno );
   for ( const char* bad : { "reboot", "vlantxdisable 5000 1", "vlantxdisable 100 2",
                             "vlantxdisable 100 1 extra" } ) {
      std::string text = bad;
      EXPECT_EQ( -1, fabric.ioctl( SimFabricDevice::kFd, Shim::fabIoctlRequest, text.data() ) )
          << bad;
      EXPECT_EQ( EINVAL, errno ) << bad;
   }
   EXPECT_TRUE( fabric.txDisabledVlans().empty() );
   EXPECT_EQ( 4u, fabric.commands().size() );
   EXPECT_EQ( 0, fabric.close( SimFabricDevice::kFd ) );
   EXPECT_EQ( -1, fabric.close( SimFabricDevice::kFd ) );
   EXPECT_EQ( EBADF, errno );
}

TEST_F( FabricDeviceTest, InjectedFaultFiresOnceAndDoesNothing ) {
   fabric.failNext( SimFabricDevice::Step::ioctl, EIO );
   ASSERT_EQ( SimFabricDevice::kFd, fabric.open( Shim::fabDevicePath, O_RDWR ) );
   char command[] = "vlantxdisable 100 1";
   EXPECT_EQ( -1, fabric.ioctl( SimFabricDevice::kFd, Shim::fabIoctlRequest, command ) );
   EXPECT_EQ( EIO, errno );
   EXPECT_TRUE( fabric.commands().empty() );
   EXPECT_EQ( 0, fabric.ioctl( SimFabricDevice::kFd, Shim::fabIoctlRequest, command ) );
   EXPECT_TRUE( fabric.vlanTxDisabled( 100 ) );
}

}  // namespace
}  // namespace SimSwitchTest
