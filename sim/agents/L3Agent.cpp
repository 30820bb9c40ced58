#include "sim/agents/L3Agent.h"

#include <algorithm>
#include <map>

#include "platform/vesper/Assert.h"

namespace Sim {

L3Agent::L3Agent( std::vector<AgentChip> chips, HalyardL3::L3SliceAgentStatus::Ptr requests,
                  HalyardL3::L3IntfStatus::Ptr answers )
    : chips_( std::move( chips ) ),
      requests_( std::move( requests ) ),
      answers_( std::move( answers ) ) {
   VESPER_ASSERT( requests_ && answers_ );
   std::sort( chips_.begin(), chips_.end(),
              []( const AgentChip& a, const AgentChip& b ) { return a.modId < b.modId; } );
   for ( const AgentChip& chip : chips_ ) {
      answers_->intfClassIdPerChipResponseIs( chip.modId );
   }
}

const AgentChip* L3Agent::chipOf( Pylon::ModId modId ) const {
   for ( const AgentChip& chip : chips_ ) {
      if ( chip.modId == modId ) {
         return &chip;
      }
   }
   return nullptr;
}

L3Agent::Work L3Agent::workOf( const AgentChip& chip ) const {
   std::map<U32, HalyardL3::IntfClassId> changes;
   const auto requested = requests_->intfClassIdPerChipRequest( chip.modId );
   const auto answered = answers_->intfClassIdPerChipResponse( chip.modId );
   if ( requested ) {
      for ( const auto& node : requested->intfClassId() ) {
         const bool same = answered && answered->intfClassIdHas( node.key() ) &&
                           answered->intfClassId( node.key() ) == node.value();
         if ( node.key() < ChipVlans::kVlanCount && !same ) {
            changes[node.key()] = node.value();
         }
      }
   }
   if ( answered ) {
      for ( const auto& node : answered->intfClassId() ) {
         const bool withdrawn = !requested || !requested->intfClassIdHas( node.key() );
         if ( withdrawn && node.value() != 0 ) {
            changes[node.key()] = 0;
         }
      }
   }
   return Work( changes.begin(), changes.end() );
}

U32 L3Agent::carryOut( const AgentChip& chip ) {
   const Work work = workOf( chip );
   if ( work.empty() ) {
      return 0;
   }
   // The record may have been taken away since the agent started; answering publishes it again.
   const auto answers = answers_->intfClassIdPerChipResponseIs( chip.modId );
   for ( const auto& [vlan, cls] : work ) {
      // An answer left for a VLAN the chip has no class for changes only the record.
      if ( vlan < ChipVlans::kVlanCount ) {
         const Status s = chip.model->vlans().l3ClassIs( vlan, cls );
         VESPER_ASSERT( s == Status::Ok );
      }
      answers->intfClassIdIs( vlan, cls );
   }
   return static_cast<U32>( work.size() );
}

U32 L3Agent::pending() const {
   U32 count = 0;
   for ( const AgentChip& chip : chips_ ) {
      count += static_cast<U32>( workOf( chip ).size() );
   }
   return count;
}

U32 L3Agent::pending( Pylon::ModId modId ) const {
   const AgentChip* chip = chipOf( modId );
   return chip ? static_cast<U32>( workOf( *chip ).size() ) : 0;
}

U32 L3Agent::step() {
   U32 count = 0;
   for ( const AgentChip& chip : chips_ ) {
      count += carryOut( chip );
   }
   return count;
}

U32 L3Agent::step( Pylon::ModId modId ) {
   const AgentChip* chip = chipOf( modId );
   return chip ? carryOut( *chip ) : 0;
}

}  // namespace Sim
