#include "sim/switch/SimFabricDevice.h"

#include <cerrno>
#include <cstring>
#include <sstream>

#include "platform/pylon/VlanId.h"
#include "platform/vesper/Assert.h"

namespace Sim {

namespace {

int failWith( int error ) {
   errno = error;
   return -1;
}

}  // namespace

void SimFabricDevice::failNext( Step step, int error ) {
   VESPER_ASSERT( error != 0 );
   faults_[static_cast<int>( step )] = error;
}

int SimFabricDevice::takeFault( Step step ) {
   int& fault = faults_[static_cast<int>( step )];
   const int error = fault;
   fault = 0;
   return error;
}

int SimFabricDevice::open( const char* path, int /*flags*/ ) {
   if ( const int error = takeFault( Step::open ) ) {
      return failWith( error );
   }
   if ( std::strcmp( path, Shim::fabDevicePath ) != 0 ) {
      return failWith( ENOENT );
   }
   if ( open_ ) {
      return failWith( EBUSY );
   }
   open_ = true;
   return kFd;
}

int SimFabricDevice::ioctl( int fd, unsigned long request, char* command ) {
   if ( const int error = takeFault( Step::ioctl ) ) {
      return failWith( error );
   }
   if ( !open_ || fd != kFd ) {
      return failWith( EBADF );
   }
   if ( request != Shim::fabIoctlRequest ) {
      return failWith( ENOTTY );
   }
   commands_.emplace_back( command );
   return apply( commands_.back() ) ? 0 : failWith( EINVAL );
}

int SimFabricDevice::close( int fd ) {
   if ( const int error = takeFault( Step::close ) ) {
      return failWith( error );
   }
   if ( !open_ || fd != kFd ) {
      return failWith( EBADF );
   }
   open_ = false;
   return 0;
}

bool SimFabricDevice::apply( const std::string& command ) {
   std::istringstream in( command );
   std::string verb;
   long vlan = 0;
   int disable = -1;
   std::string rest;
   if ( !( in >> verb >> vlan >> disable ) || ( in >> rest ) || verb != "vlantxdisable" ) {
      return false;
   }
   if ( vlan < Pylon::VlanId::min || vlan > Pylon::VlanId::max ||
        ( disable != 0 && disable != 1 ) ) {
      return false;
   }
   if ( disable ) {
      txDisabled_.insert( static_cast<U16>( vlan ) );
   } else {
      txDisabled_.erase( static_cast<U16>( vlan ) );
   }
   return true;
}

}  // namespace Sim
