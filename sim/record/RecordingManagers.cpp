#include "sim/record/RecordingManagers.h"

#include "sim/record/RecordingSdk.h"

namespace Sim {

using Halyard::HalyardBoundedTcamEntryManager;
using Halyard::HalyardTcamEntryManager;
using Halyard::HalyardTcamGroupManager;
using Halyard::HalyardUnboundedTcamEntryManager;
using Halyard::TcamGroupAssignment;

ExhaustedMirror::ExhaustedMirror( const HalyardTcamEntryManager::Ptr& inner,
                                  HalyardTcamEntryManager& mirror )
    : mirror_( mirror ) {
   notifierIs( inner );
}

void ExhaustedMirror::onExhausted( U32 unit ) {
   mirror_.exhaustedIs( unit, notifier()->exhausted( unit ) );
}

U32 RecordingUnboundedEntryManager::getEntry( U32 unit, const Vesper::String& description ) {
   const U32 entry = call<&HalyardUnboundedTcamEntryManager::getEntry>( unit, description );
   entryIssued( entry );
   return entry;
}

void RecordingUnboundedEntryManager::releaseEntry( U32 unit, U32 entry ) {
   call<&HalyardUnboundedTcamEntryManager::releaseEntry>( unit, entry );
   entryReleased( entry );
}

U32 RecordingBoundedEntryManager::getEntry( U32 unit, U32 index,
                                            const Vesper::String& description ) {
   const U32 entry = call<&HalyardBoundedTcamEntryManager::getEntry>( unit, index, description );
   entryIssued( entry );
   return entry;
}

RecordingTcamGroupManager::RangeCheckerMirror::RangeCheckerMirror( const Gm::Ptr& inner,
                                                                   Gm& mirror )
    : mirror_( mirror ) {
   notifierIs( inner );
}

void RecordingTcamGroupManager::RangeCheckerMirror::onRangeCheckersExhausted( U32 unit ) {
   mirror_.rangeCheckersExhaustedIs( unit, notifier()->rangeCheckersExhausted( unit ) );
}

RecordingTcamGroupManager::RecordingTcamGroupManager( CallRecorder& recorder, const Gm::Ptr& inner )
    : recorder_( recorder ), inner_( inner ), mirror_( inner, *this ) {}

HalyardTcamGroupManager::Ptr RecordingTcamGroupManager::create( CallRecorder& recorder,
                                                                const Gm::Ptr& inner ) {
   Vesper::Ptr<RecordingTcamGroupManager> gm( new RecordingTcamGroupManager( recorder, inner ) );
   gm->recordsCopy();
   gm->hasNotificationActiveIs( true );
   return gm;
}

void RecordingTcamGroupManager::recordsCopy() {
   for ( const auto& member : inner_->modChipInfo() ) {
      modChipInfoIs( member.key(), member.value() );
      rangeCheckersExhaustedIs( member.key(), inner_->rangeCheckersExhausted( member.key() ) );
   }
   for ( U32 group = 0; group < 256; ++group ) {
      const U8 g = static_cast<U8>( group );
      if ( inner_->groupMirroringAclValid( g ) ) {
         groupMirroringAclValidIs( g, true );
         groupMirroringAclTypeIs( g, inner_->groupMirroringAclType( g ) );
      }
   }
   ingressMirrorAclKeyWidthModeIs( inner_->ingressMirrorAclKeyWidthMode() );
   ingressRaclSharingSupportedIs( inner_->ingressRaclSharingSupported() );
}

HalyardBoundedTcamEntryManager::Ptr RecordingTcamGroupManager::entryManager(
    TcamGroupAssignment a ) const {
   auto it = bounded_.find( a );
   if ( it == bounded_.end() ) {
      const HalyardBoundedTcamEntryManager::Ptr inner = inner_->entryManager( a );
      HalyardBoundedTcamEntryManager::Ptr decorator;
      if ( inner ) {
         auto* self = const_cast<RecordingTcamGroupManager*>( this );
         decorator = HalyardBoundedTcamEntryManager::Ptr( new RecordingBoundedEntryManager(
             self, recorder_, inner, recorder_.log().managerIndex( a, true ) ) );
         decorator->hasNotificationActiveIs( true );
      }
      it = bounded_.emplace( a, decorator ).first;
   }
   return it->second;
}

HalyardUnboundedTcamEntryManager::Ptr RecordingTcamGroupManager::unboundedEntryManager(
    TcamGroupAssignment a ) const {
   auto it = unbounded_.find( a );
   if ( it == unbounded_.end() ) {
      const HalyardUnboundedTcamEntryManager::Ptr inner = inner_->unboundedEntryManager( a );
      HalyardUnboundedTcamEntryManager::Ptr decorator;
      if ( inner ) {
         auto* self = const_cast<RecordingTcamGroupManager*>( this );
         decorator = HalyardUnboundedTcamEntryManager::Ptr( new RecordingUnboundedEntryManager(
             self, recorder_, inner, recorder_.log().managerIndex( a, false ) ) );
         decorator->hasNotificationActiveIs( true );
      }
      it = unbounded_.emplace( a, decorator ).first;
   }
   return it->second;
}

std::unique_ptr<Shim::Sdk> CallRecorder::sdkOver( Shim::Sdk& inner ) {
   return std::make_unique<RecordingSdk>( inner, *this );
}

HalyardTcamGroupManager::Ptr CallRecorder::groupManagerOver(
    const HalyardTcamGroupManager::Ptr& inner ) {
   return RecordingTcamGroupManager::create( *this, inner );
}

}  // namespace Sim
