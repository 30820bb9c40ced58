// fab_ioctl through a stand-in fabric device: the command given, and the
// exact texts with which it ends the process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>

#include <cerrno>
#include <csignal>
#include <string>
#include <vector>

#include "platform/shim/FabIoctl.h"

namespace ShimTest {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::KilledBySignal;

// Records what fab_ioctl does to the device; fails a step on request.
class FakeFabric : public Shim::FabricDevice {
 public:
   std::vector<std::string> steps;
   int failOpen = 0;  // errno to fail with, 0 to succeed
   int failIoctl = 0;
   int failClose = 0;

   int open( const char* path, int flags ) override {
      steps.push_back( std::string( "open " ) + path + ( flags == O_RDWR ? " rw" : " other" ) );
      return fail( failOpen, 17 );
   }
   int ioctl( int fd, unsigned long request, char* command ) override {
      steps.push_back( "ioctl " + std::to_string( fd ) + " " + std::to_string( request ) + " " +
                       command );
      return fail( failIoctl, 0 );
   }
   int close( int fd ) override {
      steps.push_back( "close " + std::to_string( fd ) );
      return fail( failClose, 0 );
   }

 private:
   static int fail( int error, int success ) {
      if ( error == 0 ) {
         return success;
      }
      errno = error;
      return -1;
   }
};

class FabIoctlTest : public ::testing::Test {
 protected:
   void SetUp() override { Shim::fabricDeviceIs( &fabric_ ); }
   void TearDown() override { Shim::fabricDeviceIs( nullptr ); }

   FakeFabric fabric_;
};

TEST_F( FabIoctlTest, SendsTheFormattedCommandAndCloses ) {
   Shim::fab_ioctl( "vlantxdisable %u 1", 100u );
   EXPECT_THAT( fabric_.steps, ElementsAre( "open /dev/fabric rw",
                                            "ioctl 17 255 vlantxdisable 100 1", "close 17" ) );
}

TEST_F( FabIoctlTest, CommandIsCutToTheBuffer ) {
   const std::string longText( 300, 'x' );
   Shim::fab_ioctl( "%s", longText.c_str() );
   ASSERT_EQ( 3u, fabric_.steps.size() );
   EXPECT_EQ( "ioctl 17 255 " + std::string( Shim::fabCommandSize - 1, 'x' ), fabric_.steps[1] );
}

using FabIoctlDeathTest = FabIoctlTest;

TEST_F( FabIoctlDeathTest, OpenFailureNamesTheDevice ) {
   fabric_.failOpen = ENOENT;
   EXPECT_EXIT( Shim::fab_ioctl( "vlantxdisable %u 1", 10u ), KilledBySignal( SIGABRT ),
                HasSubstr( "fab_ioctl: open /dev/fabric: No such file or directory\n" ) );
}

TEST_F( FabIoctlDeathTest, IoctlFailureNamesTheCommand ) {
   fabric_.failIoctl = EPERM;
   EXPECT_EXIT( Shim::fab_ioctl( "vlantxdisable %u 0", 4094u ), KilledBySignal( SIGABRT ),
                HasSubstr( "vlantxdisable 4094 0: Operation not permitted\n" ) );
}

TEST_F( FabIoctlDeathTest, CloseFailureNamesTheCommand ) {
   fabric_.failClose = EIO;
   EXPECT_EXIT( Shim::fab_ioctl( "vlantxdisable %u 1", 7u ), KilledBySignal( SIGABRT ),
                HasSubstr( "vlantxdisable 7 1: Input/output error\n" ) );
}

}  // namespace
}  // namespace ShimTest
