// Units, the bitmaps and probes of a unit, and the diagnostics of the simulated SDK.
#include "sim/sdk/SimSdk.h"

#include <algorithm>
#include <bit>
#include <iostream>
#include <string>

#include "platform/vesper/Exception.h"
#include "sim/sdk/SdkValues.h"

namespace Sim {

using namespace SdkValues;

// Ports beyond the model's bitmap name no port of any chip (1023 stands for an unknown
// interface): no packet arrives on or leaves by them, so the chip keeps no bit for them.
PortBitmap portBitmapOf( const bcm_pbmp_t& pbmp ) {
   PortBitmap ports;
   constexpr int kWords = static_cast<int>( PortBitmap::kCapacity ) / bcm_pbmp_t::wordBits;
   for ( int w = 0; w < kWords; ++w ) {
      U32 bits = pbmp.pbits[w];
      while ( bits ) {
         const int b = std::countr_zero( bits );
         ports.set( static_cast<U32>( w * bcm_pbmp_t::wordBits + b ) );
         bits &= bits - 1;
      }
   }
   return ports;
}

bcm_pbmp_t pbmpOf( const PortBitmap& ports ) {
   bcm_pbmp_t pbmp;
   ports.forEach( [&]( U32 p ) { pbmp.portAdd( static_cast<int>( p ) ); } );
   return pbmp;
}

SimSdk::SimSdk() : console_( &std::cout ) {}

SimSdk::~SimSdk() = default;

void SimSdk::unitIs( int unit, ChipModel& chip, const ChipKind& kind ) {
   if ( unit < 0 ) {
      throw Vesper::RangeException( "unit " + std::to_string( unit ) + " < 0 not allowed" );
   }
   const auto at = static_cast<std::size_t>( unit );
   if ( units_.size() <= at ) {
      units_.resize( at + 1 );
   }
   units_[at] = Unit{ &chip, &kind, 0, 0, 0 };
}

void SimSdk::unitDel( int unit ) {
   if ( Unit* u = unitOf( unit ) ) {
      *u = Unit{};
   }
}

const SimSdk::Unit* SimSdk::unitOf( int unit ) const {
   if ( unit < 0 || static_cast<std::size_t>( unit ) >= units_.size() ) {
      return nullptr;
   }
   const Unit& u = units_[static_cast<std::size_t>( unit )];
   return u.chip ? &u : nullptr;
}

SimSdk::Unit* SimSdk::unitOf( int unit ) {
   return const_cast<Unit*>( static_cast<const SimSdk*>( this )->unitOf( unit ) );
}

ChipModel* SimSdk::chip( int unit ) const {
   const Unit* u = unitOf( unit );
   return u ? u->chip : nullptr;
}

const ChipKind* SimSdk::chipKind( int unit ) const {
   const Unit* u = unitOf( unit );
   return u ? u->kind : nullptr;
}

U32 SimSdk::portLockDepth( int unit ) const {
   const Unit* u = unitOf( unit );
   return u ? u->portLockDepth : 0;
}

int SimSdk::begin( SdkOp op, int unit, ChipModel*& chip ) {
   Unit* u = nullptr;
   const int rc = begin( op, unit, u );
   chip = u ? u->chip : nullptr;
   return rc;
}

int SimSdk::begin( SdkOp op, int unit, Unit*& u ) {
   if ( const int fault = gate_.enter( op ) ) {
      return fault;
   }
   u = unitOf( unit );
   return u ? kNone : kUnit;
}

// ---- Bitmaps of a unit.

bcm_pbmp_t SimSdk::unitPorts( int unit, PortSet which ) const {
   bcm_pbmp_t pbmp;
   const Unit* u = unitOf( unit );
   if ( !u ) {
      return pbmp;
   }
   // Port 0 is the CPU port; the last hiGigPorts ports are HiGig ports. The chip model's
   // count is the truth, should a profile have made it other than its kind's.
   const U32 count = u->chip->ports().portCount();
   const U32 hiGig = std::min( u->kind->hiGigPorts, count );
   const U32 first = which == PortSet::all ? 0 : 1;
   const U32 end = which == PortSet::ethernet ? count - hiGig : count;
   for ( U32 p = first; p < end; ++p ) {
      pbmp.portAdd( static_cast<int>( p ) );
   }
   return pbmp;
}

bcm_pbmp_t SimSdk::PBMP_ALL( int unit ) {
   return unitPorts( unit, PortSet::all );
}

bcm_pbmp_t SimSdk::PBMP_E_ALL( int unit ) {
   return unitPorts( unit, PortSet::ethernet );
}

bcm_pbmp_t SimSdk::PBMP_PORT_ALL( int unit ) {
   return unitPorts( unit, PortSet::frontPanel );
}

void SimSdk::BCM_PBMP_CLEAR( bcm_pbmp_t& pbmp ) {
   pbmp.clear();
}

bool SimSdk::BCM_PBMP_IS_NULL( const bcm_pbmp_t& pbmp ) {
   return pbmp.isNull();
}

void SimSdk::BCM_PBMP_PORT_ADD( bcm_pbmp_t& pbmp, bcm_port_t port ) {
   pbmp.portAdd( port );
}

void SimSdk::BCM_PBMP_PORT_REMOVE( bcm_pbmp_t& pbmp, bcm_port_t port ) {
   pbmp.portRemove( port );
}

bool SimSdk::BCM_PBMP_MEMBER( const bcm_pbmp_t& pbmp, bcm_port_t port ) {
   return pbmp.member( port );
}

void SimSdk::BCM_PBMP_COUNT( const bcm_pbmp_t& pbmp, int& count ) {
   count = pbmp.count();
}

// ---- Chip probes: a unit without a chip answers no.

bool SimSdk::probe( int unit, bool ChipProbes::*which ) const {
   const Unit* u = unitOf( unit );
   return u && u->kind->probes.*which;
}

bool SimSdk::isChipGroupA( int unit ) {
   return probe( unit, &ChipProbes::groupA );
}

bool SimSdk::isChipGroupB( int unit ) {
   return probe( unit, &ChipProbes::groupB );
}

bool SimSdk::isChipGroupC( int unit ) {
   return probe( unit, &ChipProbes::groupC );
}

bool SimSdk::isChipGroupD( int unit ) {
   return probe( unit, &ChipProbes::groupD );
}

bool SimSdk::isChipGroupE( int unit ) {
   return probe( unit, &ChipProbes::groupE );
}

bool SimSdk::isChipGroupF( int unit ) {
   return probe( unit, &ChipProbes::groupF );
}

bcm_field_action_t SimSdk::BCM_HG_TRUNK_CANCEL_ACTION( int unit ) {
   return sdkAction( isChipGroupC( unit ) ? ActionId::HgTrunkResolveCancel
                                          : ActionId::TrunkLoadBalanceCancel );
}

// ---- Diagnostics.

int SimSdk::bcm_field_entry_dump( int unit, bcm_field_entry_t entry ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_entry_dump, unit, chip ) ) {
      return rc;
   }
   const auto dump = chip->entryDump( entry );
   if ( !dump ) {
      return kNotFound;
   }
   *console_ << *dump;
   console_->flush();
   return kNone;
}

const char* SimSdk::bcm_errmsg( int rc ) {
   return errorText( rc );
}

}  // namespace Sim
