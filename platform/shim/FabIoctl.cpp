#include "platform/shim/FabIoctl.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace Shim {

namespace {

class RealFabricDevice : public FabricDevice {
 public:
   int open( const char* path, int flags ) override { return ::open( path, flags ); }
   int ioctl( int fd, unsigned long request, char* command ) override {
      return ::ioctl( fd, request, command );
   }
   int close( int fd ) override { return ::close( fd ); }
};

FabricDevice* installedDevice = nullptr;

}  // namespace

FabricDevice& fabricDevice() {
   static RealFabricDevice realDevice;
   return installedDevice ? *installedDevice : realDevice;
}

void fabricDeviceIs( FabricDevice* device ) {
   installedDevice = device;
}

void fab_ioctl( const char* format, ... ) {
   char command[fabCommandSize] = {};
   va_list args;
   va_start( args, format );
   std::vsnprintf( command, sizeof command, format, args );
   va_end( args );

   FabricDevice& device = fabricDevice();
   const int fd = device.open( fabDevicePath, O_RDWR );
   if ( fd < 0 ) {
      char text[64];
      std::snprintf( text, sizeof text, "%s: open /dev/fabric", "fab_ioctl" );
      std::perror( text );
      std::abort();
   }
   if ( device.ioctl( fd, fabIoctlRequest, command ) < 0 || device.close( fd ) != 0 ) {
      std::perror( command );
      std::abort();
   }
}

}  // namespace Shim
