#include "sim/sdk/SdkCallGate.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Exception.h"

namespace Sim {

namespace {

constexpr std::array<std::string_view, kSdkOpCount> kOpNames{
#define SIM_SDK_OP_NAME( name ) #name,
    SIM_SDK_CODE_OPERATIONS( SIM_SDK_OP_NAME ) SIM_SDK_VOID_OPERATIONS( SIM_SDK_OP_NAME )
#undef SIM_SDK_OP_NAME
};

SdkOp opNamed( std::string_view name ) {
   const auto it = std::find( kOpNames.begin(), kOpNames.end(), name );
   if ( it == kOpNames.end() ) {
      throw Vesper::RangeException( "no simulated SDK operation is named " + std::string( name ) );
   }
   return static_cast<SdkOp>( it - kOpNames.begin() );
}

}  // namespace

std::string_view sdkOpName( SdkOp op ) {
   return kOpNames[static_cast<std::size_t>( op )];
}

bool sdkOpHasCode( SdkOp op ) {
   return op < SdkOp::soc_mem_field32_set;
}

U64 SdkCallGate::callCount( std::string_view name ) const {
   return callCount( opNamed( name ) );
}

void SdkCallGate::failCall( std::string_view name, U32 n, int code ) {
   const SdkOp op = opNamed( name );
   if ( !sdkOpHasCode( op ) ) {
      throw Vesper::RangeException( std::string( name ) + " returns no code and cannot fail" );
   }
   if ( n == 0 || code >= 0 ) {
      throw Vesper::RangeException( "a fault needs a use from 1 and a negative code" );
   }
   const U64 at = callCount( op ) + n;
   for ( Fault& f : faults_ ) {
      if ( f.op == op && f.atCount == at ) {
         f.code = code;
         return;
      }
   }
   faults_.push_back( Fault{ op, at, code } );
   ++pending_[static_cast<std::size_t>( op )];
}

void SdkCallGate::faultsDelAll() {
   faults_.clear();
   pending_.fill( 0 );
}

void SdkCallGate::violationsDelAll() {
   violations_.clear();
   lockViolations_ = 0;
}

void SdkCallGate::probeLock( SdkOp op ) {
   if ( !Vesper::ActivityUnlockAnchor::lock().held() ) {
      return;
   }
   const std::string text = std::string( sdkOpName( op ) ) + " called with the activity lock held";
   if ( probe_ == LockProbe::abort ) {
      std::fprintf( stderr, "simulated SDK: %s\n", text.c_str() );
      std::fflush( stderr );
      std::abort();
   }
   ++lockViolations_;
   violations_.push_back( text );
}

int SdkCallGate::fire( SdkOp op ) {
   const U64 count = callCount( op );
   const auto it = std::find_if( faults_.begin(), faults_.end(), [&]( const Fault& f ) {
      return f.op == op && f.atCount == count;
   } );
   if ( it == faults_.end() ) {
      return 0;
   }
   const int code = it->code;
   faults_.erase( it );
   --pending_[static_cast<std::size_t>( op )];
   return code;
}

}  // namespace Sim
