// GenericAclSm: the factory, the pass as a whole, commit and port updates, and the state that
// the owner reads. Bindings and teardown are in GenericAclSmBindings.cpp, the application of
// one ACL in GenericAclSmApply.cpp.
#include "fennel/GenericAclSm.h"

#include <algorithm>
#include <utility>

#include "fennel/GenericAclSmPass.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Fennel::GenericAclSm" )

namespace Fennel {

std::optional<U32> AclState::seqOf( U32 ruleNum ) const {
   if ( ruleNum >= rules.size() || rules[ruleNum].kind != RuleOrigin::Kind::configured ) {
      return std::nullopt;
   }
   return rules[ruleNum].seq;
}

std::optional<U32> AclState::ruleNumOf( U32 seq ) const {
   for ( U32 n = 0; n < rules.size(); ++n ) {
      if ( rules[n].kind == RuleOrigin::Kind::configured && rules[n].seq == seq ) {
         return n;
      }
   }
   return std::nullopt;
}

void registerGenericAclSm() {
   aclSmFactoryIs( []( const AclSmInputs& inputs ) -> AclSm::Ptr {
      return AclSm::Ptr( new GenericAclSm( inputs ) );
   } );
}

GenericAclSm::GenericAclSm( const AclSmInputs& inputs ) : AclSm( inputs ) {}

GenericAclSm::Ptr GenericAclSm::from( const AclSm::Ptr& machine ) {
   return Vesper::ptrDynamicCast<GenericAclSm>( machine );
}

namespace {

// The back-end's own binding operations.
class BackEndBindingOps : public AclBindingOps {
 public:
   explicit BackEndBindingOps( FennelHelper::AclHelper& helper ) : helper_( helper ) {}
   bool add( const IntfPairKey& intf, const AclData::Ptr& aclData,
             const AclDataStatus::Ptr& status ) override {
      return helper_.addIntfToAcl( intf, aclData, status );
   }
   bool remove( const IntfPairKey& intf, const AclData::Ptr& aclData,
                bool belongsToAnother ) override {
      return helper_.removeIntfFromAcl( intf, aclData, belongsToAnother );
   }
   void updatePorts( const AclData::Ptr& aclData, bool active ) override {
      helper_.updateAclPorts( aclData, active );
   }

 private:
   FennelHelper::AclHelper& helper_;
};

}  // namespace

void GenericAclSm::bindingOpsIs( std::shared_ptr<AclBindingOps> ops ) {
   bindingOps_ = std::move( ops );
}

AclBindingOps& GenericAclSm::bindingOps() const {
   if ( !bindingOps_ ) {
      // The helper outlives the machine, which holds it.
      const_cast<GenericAclSm*>( this )->bindingOps_ =
          std::make_shared<BackEndBindingOps>( *aclHelper() );
   }
   return *bindingOps_;
}

void GenericAclSm::start() {
   if ( started_ ) {
      return;
   }
   VTRACE( 1, "GenericAclSm::start: hardware bring-up" );
   started_ = true;
   aclHelper()->hwInit();
}

const AclState* GenericAclSm::acl( const AclKey& key ) const {
   const auto it = state_.find( key );
   return it == state_.end() ? nullptr : &it->second;
}

PassSummary GenericAclSm::runPass() {
   start();
   FennelHelper::AclHelper& helper = *aclHelper();
   // The deferred update the back-end asked for is this pass.
   helper.needsDeferredUpdateIs( false );
   const auto desired = desiredAcls( &bindingErrors_ );
   PassWork work;

   std::vector<AclKey> gone;
   for ( const auto& [key, acl] : state_ ) {
      if ( !desired.contains( key ) ) {
         gone.push_back( key );
      }
   }
   for ( const AclKey& key : gone ) {
      tearDown( key, desired, work );
   }
   // Every binding that goes, goes before any that comes: an interface passing from one list
   // to another must be free of the first when the second takes it.
   for ( const auto& [key, want] : desired ) {
      removeBindings( key, want, desired, work );
   }
   for ( const auto& [key, want] : desired ) {
      if ( needsApply( key, want ) || helper.dirtyAcl( key ) ) {
         work.apply.insert( key );
      }
   }
   for ( const AclKey& key : work.lostPorts ) {
      if ( !work.apply.contains( key ) ) {
         bindingOps().updatePorts( state_.at( key ).aclData, false );
      }
   }
   for ( const auto& [key, want] : desired ) {
      addBindings( key, want, work );
   }
   for ( const auto& [key, want] : desired ) {
      if ( work.apply.contains( key ) ) {
         apply( key, want, work );
      }
   }
   commitAndUpdatePorts( work );
   if ( !anyPending() ) {
      helper.dirtyIs( false );
   }
   return work.summary;
}

void GenericAclSm::commitAndUpdatePorts( PassWork& work ) {
   FennelHelper::AclHelper& helper = *aclHelper();
   if ( !work.summary.applied.empty() ) {
      // Once per batch: it compresses every group of every unit.
      helper.prepareToCommit();
   }
   std::set<AclKey> portsToUpdate = work.gainedPorts;
   for ( const AclKey& key : work.summary.applied ) {
      AclState& acl = state_.at( key );
      if ( work.holdCommit.contains( key ) ) {
         portsToUpdate.erase( key );
         continue;
      }
      helper.commitAcl( acl.aclData );
      acl.aclData->installedIs( true );
      acl.committed = true;
      work.summary.committed.push_back( key );
      portsToUpdate.insert( key );
   }
   // Ports join after commit, so that a new port meets the whole rule list at once.
   for ( const AclKey& key : portsToUpdate ) {
      const AclState& acl = state_.at( key );
      if ( acl.committed ) {  // no entries, no ports to give them
         bindingOps().updatePorts( acl.aclData, true );
      }
   }
   // Blocked interfaces open again once their ACL stands whole; one held back for the next
   // pass stays blocked until then.
   for ( const AclKey& key : work.summary.committed ) {
      if ( blocked_.erase( key ) ) {
         block( state_.at( key ), false );
      }
   }
}

void GenericAclSm::block( const AclState& acl, bool on ) {
   for ( Pylon::IntfId intf : acl.intfs ) {
      aclHelper()->blockIntf( intf, on, 0 );
   }
}

bool GenericAclSm::anyPending() const {
   return std::ranges::any_of(
       state_, []( const auto& member ) { return member.second.pending != PendingReason::none; } );
}

bool GenericAclSm::changesWaiting() const {
   const auto desired = desiredAcls( nullptr );
   if ( desired.size() != state_.size() ) {
      return true;
   }
   for ( const auto& [key, want] : desired ) {
      const auto it = state_.find( key );
      if ( it == state_.end() || it->second.intfs != want.intfs || configChanged( key, want ) ) {
         return true;
      }
   }
   return false;
}

bool GenericAclSm::passWanted() const {
   const FennelHelper::AclHelper& helper = *aclHelper();
   return !started_ || changesWaiting() || anyPending() || helper.needsDeferredUpdate() ||
          !helper.dirtyAcl().empty();
}

U32 GenericAclSm::settle( U32 maxPasses ) {
   U32 passes = 0;
   auto moreAtOnce = [&] {
      return changesWaiting() || std::ranges::any_of( state_, []( const auto& member ) {
                return member.second.pending == PendingReason::expand;
             } );
   };
   do {
      runPass();
      ++passes;
   } while ( passes < maxPasses && moreAtOnce() );
   return passes;
}

}  // namespace Fennel
