// fab_ioctl: a text command to the chip driver's fabric device.
//
// fab_ioctl( format, ... ) formats the command (for example
// "vlantxdisable %u 1" with a VLAN) into a buffer of fabCommandSize bytes,
// opens "/dev/fabric" read-write, hands the buffer to ioctl with request
// fabIoctlRequest, and closes the device. It has no failure to report: an
// agent that cannot reach its fabric ends.
//  - open fails: perror( "fab_ioctl: open /dev/fabric" ), then abort();
//  - ioctl fails or close returns non-zero: perror( <the command> ), abort().
//
// The device is reached through a FabricDevice, so that a simulation or a
// test can stand in for the driver; the default is the real device.
//
// Threads: called on the activity thread with the activity lock held.
#pragma once

#include <cstddef>

namespace Shim {

constexpr std::size_t fabCommandSize = 255;
constexpr unsigned long fabIoctlRequest = 0xFF;
constexpr const char* fabDevicePath = "/dev/fabric";

// The three system calls that fab_ioctl makes, with their POSIX contracts:
// -1 (and errno) on failure.
class FabricDevice {
 public:
   virtual ~FabricDevice() = default;
   virtual int open( const char* path, int flags ) = 0;
   virtual int ioctl( int fd, unsigned long request, char* command ) = 0;
   virtual int close( int fd ) = 0;
};

// The process-wide device that fab_ioctl uses.
FabricDevice& fabricDevice();
// Replaces it; nullptr puts the real device back. The caller keeps ownership
// and keeps `device` alive while it is installed.
void fabricDeviceIs( FabricDevice* device );

void fab_ioctl( const char* format, ... ) __attribute__( ( format( printf, 1, 2 ) ) );

}  // namespace Shim
