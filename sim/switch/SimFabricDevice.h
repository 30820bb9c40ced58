// Sim::SimFabricDevice: the chip driver's "/dev/fabric" of the simulated switch, behind the
// Shim::FabricDevice seam of fab_ioctl.
//
// It takes the driver's one command, "vlantxdisable <vlan> <1|0>", records every command in
// order, and keeps which VLANs stand tx-disabled. It answers as the system calls do: -1 and
// errno on failure.
//   - open: only "/dev/fabric" (else ENOENT); one descriptor, kFd, at a time (else EBUSY).
//   - ioctl: request 255 on the open descriptor (else EBADF / ENOTTY); a command that is not
//     "vlantxdisable V S" with V 1 to 4094 and S 0 or 1 is refused with EINVAL and changes
//     nothing; it is still recorded, as the driver would have been handed it.
//   - close: the open descriptor (else EBADF).
// failNext( step, errno ) makes the next call of that step fail with that errno and do nothing,
// so that tests can drive fab_ioctl's fatal paths.
//
// Threads: the activity thread, like fab_ioctl.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/shim/FabIoctl.h"
#include "platform/vesper/Types.h"

namespace Sim {

class SimFabricDevice : public Shim::FabricDevice {
 public:
   static constexpr int kFd = 7;

   enum class Step : U8 { open, ioctl, close };

   int open( const char* path, int flags ) override;
   int ioctl( int fd, unsigned long request, char* command ) override;
   int close( int fd ) override;

   // Every command handed to ioctl, accepted or refused, oldest first.
   const std::vector<std::string>& commands() const { return commands_; }
   void commandsDelAll() { commands_.clear(); }
   bool vlanTxDisabled( U16 vlan ) const { return txDisabled_.count( vlan ) != 0; }
   const std::set<U16>& txDisabledVlans() const { return txDisabled_; }
   bool isOpen() const { return open_; }

   // REQUIRES: error != 0.
   void failNext( Step step, int error );

 private:
   // The errno pending for `step`, cleared as it is taken; 0 if none.
   int takeFault( Step step );
   bool apply( const std::string& command );

   std::vector<std::string> commands_;
   std::set<U16> txDisabled_;
   bool open_ = false;
   int faults_[3] = { 0, 0, 0 };
};

}  // namespace Sim
