#include "sim/agents/VlanTopoAgent.h"

#include <algorithm>

#include "platform/halyard/HalyardConstants.h"
#include "platform/vesper/Assert.h"

namespace Sim {

namespace {

using HalyardCentral::classDropRoutedTraffic_;
using HalyardVlanTopo::AclModSvi;

// The VLAN's L2 class on the chip, with `set` and `clear` applied; the class bits of the VLAN
// topology and the drop bit of a block live side by side in one class.
void l2ClassChange( ChipModel& chip, U32 vlan, U32 set, U32 clear ) {
   const U32 cls = chip.vlans().l2Class( vlan ).value_or( 0 );
   const Status s = chip.vlans().l2ClassIs( vlan, ( cls & ~clear ) | set );
   VESPER_ASSERT( s == Status::Ok );
}

bool byVlan( const AclModSvi& a, const AclModSvi& b ) {
   return a.vlanId() < b.vlanId();
}

}  // namespace

VlanTopoAgent::VlanTopoAgent( std::vector<AgentChip> chips,
                              HalyardVlanTopo::VlanTopoSliceStatus::Ptr requests,
                              HalyardVlanTopo::VlanTopoBlockedStatus::Ptr answers )
    : chips_( std::move( chips ) ),
      requests_( std::move( requests ) ),
      answers_( std::move( answers ) ) {
   VESPER_ASSERT( requests_ && answers_ );
   std::sort( chips_.begin(), chips_.end(),
              []( const AgentChip& a, const AgentChip& b ) { return a.modId < b.modId; } );
}

const AgentChip* VlanTopoAgent::chipOf( Pylon::ModId modId ) const {
   for ( const AgentChip& chip : chips_ ) {
      if ( chip.modId == modId ) {
         return &chip;
      }
   }
   return nullptr;
}

VlanTopoAgent::Work VlanTopoAgent::workOf( const AgentChip& chip ) const {
   Work work;
   for ( const auto& node : requests_->block() ) {
      const AclModSvi& key = node.key();
      if ( key.modId() == chip.modId && node.value() && !answers_->blocked( key ) ) {
         work.block.push_back( key );
      }
   }
   for ( const auto& node : answers_->blocked() ) {
      const AclModSvi& key = node.key();
      if ( key.modId() == chip.modId && !requests_->block( key ) ) {
         work.unblock.push_back( key );
      }
   }
   std::sort( work.block.begin(), work.block.end(), byVlan );
   std::sort( work.unblock.begin(), work.unblock.end(), byVlan );
   classWorkOf( chip, work );
   return work;
}

void VlanTopoAgent::classWorkOf( const AgentChip& chip, Work& work ) const {
   std::map<U32, std::optional<U16> > changes;
   const auto requested = requests_->aclVlanClassIdPerChip( chip.chip );
   if ( requested ) {
      for ( const auto& node : requested->vlanClassId() ) {
         auto applied = appliedClass_.find( { chip.chip, node.key() } );
         // The chip keeps classes for VLANs 0 to 4095 only; a request beyond is never carried out.
         if ( node.key() < ChipVlans::kVlanCount &&
              ( applied == appliedClass_.end() || applied->second != node.value() ) ) {
            changes[node.key()] = node.value();
         }
      }
   }
   for ( auto it = appliedClass_.lower_bound( { chip.chip, 0 } );
         it != appliedClass_.end() && it->first.first == chip.chip; ++it ) {
      if ( !requested || !requested->vlanClassIdHas( it->first.second ) ) {
         changes[it->first.second] = std::nullopt;
      }
   }
   work.classes.assign( changes.begin(), changes.end() );
}

U32 VlanTopoAgent::carryOut( const AgentChip& chip ) {
   const Work work = workOf( chip );
   for ( const AclModSvi& key : work.block ) {
      l2ClassChange( *chip.model, key.vlanId().value(), classDropRoutedTraffic_, 0 );
      answers_->blockedIs( key, true );
   }
   for ( const AclModSvi& key : work.unblock ) {
      l2ClassChange( *chip.model, key.vlanId().value(), 0, classDropRoutedTraffic_ );
      answers_->blockedDel( key );
   }
   for ( const auto& [vlan, cls] : work.classes ) {
      const U32 others = ~classDropRoutedTraffic_;
      l2ClassChange( *chip.model, vlan, cls.value_or( 0 ) & others, others );
      if ( cls ) {
         appliedClass_[{ chip.chip, vlan }] = *cls;
      } else {
         appliedClass_.erase( { chip.chip, vlan } );
      }
   }
   return work.size();
}

U32 VlanTopoAgent::pending() const {
   U32 count = 0;
   for ( const AgentChip& chip : chips_ ) {
      count += workOf( chip ).size();
   }
   return count;
}

U32 VlanTopoAgent::pending( Pylon::ModId modId ) const {
   const AgentChip* chip = chipOf( modId );
   return chip ? workOf( *chip ).size() : 0;
}

U32 VlanTopoAgent::step() {
   U32 count = 0;
   for ( const AgentChip& chip : chips_ ) {
      count += carryOut( chip );
   }
   return count;
}

U32 VlanTopoAgent::step( Pylon::ModId modId ) {
   const AgentChip* chip = chipOf( modId );
   return chip ? carryOut( *chip ) : 0;
}

}  // namespace Sim
