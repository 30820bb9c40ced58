// Internal to sim/record: the TCAM manager decorators of CallRecorder (see CallRecorder.h for
// what they keep in step with the managers they decorate).
#pragma once

#include <map>

#include "platform/tcam/HalyardBoundedTcamEntryManager.h"
#include "platform/tcam/HalyardTcamGroupManager.h"
#include "platform/tcam/HalyardUnboundedTcamEntryManager.h"
#include "sim/record/CallOps.h"
#include "sim/record/CallRecorder.h"

namespace Sim {

class RecordingTcamGroupManager;

// Keeps a decorator's exhausted record equal to its decorated manager's.
class ExhaustedMirror : public Halyard::HalyardTcamEntryManager::NotifieeConst {
 public:
   ExhaustedMirror( const Halyard::HalyardTcamEntryManager::Ptr& inner,
                    Halyard::HalyardTcamEntryManager& mirror );
   void onExhausted( U32 unit ) override;

 private:
   Halyard::HalyardTcamEntryManager& mirror_;
};

// The operations both kinds of entry manager share; `Base` is the kind's interface.
template <class Base>
class RecordingEntryManagerOps : public Base {
   using Manager = Halyard::HalyardTcamEntryManager;

 public:
   U32 entriesAvailable( U32 unit ) const override {
      return call<&Manager::entriesAvailable>( unit );
   }
   U32 entriesInUse( U32 unit ) const override { return call<&Manager::entriesInUse>( unit ); }
   void enableEntry( U32 unit, U32 entry, bool enable, int toleratedRc ) override {
      call<&Manager::enableEntry>( unit, entry, enable, toleratedRc );
   }
   int installEntry( U32 unit, U32 entry ) override {
      return call<&Manager::installEntry>( unit, entry );
   }
   int removeEntry( U32 unit, U32 entry ) override {
      return call<&Manager::removeEntry>( unit, entry );
   }
   U64 hitsForEntry( U32 unit, U32 entry ) const override {
      return call<&Manager::hitsForEntry>( unit, entry );
   }
   int setPriorityForEntry( U32 unit, U32 entry, U32 priority ) override {
      return call<&Manager::setPriorityForEntry>( unit, entry, priority );
   }
   void addInPortsForEntry( U32 unit, U32 entry, const bcm_pbmp_t& data,
                            const bcm_pbmp_t& mask ) override {
      call<&Manager::addInPortsForEntry>( unit, entry, data, mask );
   }
   void setTcamEntryBcmPbmpPermanent( U32 unit, U32 entry, bool permanent ) override {
      call<&Manager::setTcamEntryBcmPbmpPermanent>( unit, entry, permanent );
   }
   bcm_pbmp_t tcamEntryBcmPbmp( U32 unit, U32 entry ) const override {
      return call<&Manager::tcamEntryBcmPbmp>( unit, entry );
   }
   U32 getRangeChecker( U32 unit, const Halyard::RangeCheckerDesc& desc ) override {
      return call<&Manager::getRangeChecker>( unit, desc );
   }
   int attachRangeChecker( U32 unit, U32 entry, U32 rangeCheckerId ) override {
      return call<&Manager::attachRangeChecker>( unit, entry, rangeCheckerId );
   }
   void releaseRangeChecker( U32 unit, const Halyard::RangeCheckerDesc& desc ) override {
      call<&Manager::releaseRangeChecker>( unit, desc );
   }
   Halyard::QualIdList getAclUdf( U32 unit, int aclType, U32 proto, Halyard::UdfOffsetBase base,
                                  U8 offset, U8 length ) override {
      return call<&Manager::getAclUdf>( unit, aclType, proto, base, offset, length );
   }
   void releaseAclUdf( U32 unit, int aclType, U32 proto, Halyard::UdfOffsetBase base, U8 offset,
                       U8 length ) override {
      call<&Manager::releaseAclUdf>( unit, aclType, proto, base, offset, length );
   }
   void compressEntries( U32 unit ) override { call<&Manager::compressEntries>( unit ); }
   int getIpType( U32 unit, U32 entry ) const override {
      return call<&Manager::getIpType>( unit, entry );
   }
   void qualifyIpType( U32 unit, U32 entry, bcm_field_IpType_t type ) override {
      call<&Manager::qualifyIpType>( unit, entry, type );
   }

 protected:
   template <class... Extra>
   RecordingEntryManagerOps( RecordingTcamGroupManager* groupManager, CallRecorder& recorder,
                             const Vesper::Ptr<Base>& inner, U16 index, Extra... extra )
       : Base( groupManager, inner->groupId(), inner->groupName(), inner->groupPriority(),
               extra... ),
         recorder_( &recorder ),
         inner_( inner ),
         index_( index ),
         mirror_( inner, *this ) {
      for ( const auto& member : inner->exhausted() ) {
         this->exhaustedIs( member.key(), member.value() );
      }
   }

   template <auto M, class... A>
   auto call( A&&... args ) const
       -> decltype( ( std::declval<Base&>().*M )( std::forward<A>( args )... ) ) {
      if ( !recorder_->recording() ) {
         return ( inner_.ptr()->*M )( std::forward<A>( args )... );
      }
      return record::Op<M>::record( recorder_->log(), index_, *inner_, std::forward<A>( args )... );
   }
   // The entry now names this manager, or no manager, in the group manager's record.
   void entryIssued( U32 entry );
   void entryReleased( U32 entry );

   CallRecorder* recorder_;
   Vesper::Ptr<Base> inner_;
   U16 index_;
   ExhaustedMirror mirror_;
};

class RecordingUnboundedEntryManager
    : public RecordingEntryManagerOps<Halyard::HalyardUnboundedTcamEntryManager> {
 public:
   RecordingUnboundedEntryManager( RecordingTcamGroupManager* groupManager, CallRecorder& recorder,
                                   const Halyard::HalyardUnboundedTcamEntryManager::Ptr& inner,
                                   U16 index )
       : RecordingEntryManagerOps( groupManager, recorder, inner, index ) {}

   U32 getEntry( U32 unit, const Vesper::String& description ) override;
   void releaseEntry( U32 unit, U32 entry ) override;
};

class RecordingBoundedEntryManager
    : public RecordingEntryManagerOps<Halyard::HalyardBoundedTcamEntryManager> {
 public:
   RecordingBoundedEntryManager( RecordingTcamGroupManager* groupManager, CallRecorder& recorder,
                                 const Halyard::HalyardBoundedTcamEntryManager::Ptr& inner,
                                 U16 index )
       : RecordingEntryManagerOps( groupManager, recorder, inner, index, inner->entryBase() ) {}

   U32 getEntry( U32 unit, U32 index, const Vesper::String& description ) override;
};

class RecordingTcamGroupManager : public Halyard::HalyardTcamGroupManager {
   using Gm = Halyard::HalyardTcamGroupManager;

 public:
   static Ptr create( CallRecorder& recorder, const Gm::Ptr& inner );

   Halyard::HalyardBoundedTcamEntryManager::Ptr entryManager(
       Halyard::TcamGroupAssignment a ) const override;
   Halyard::HalyardUnboundedTcamEntryManager::Ptr unboundedEntryManager(
       Halyard::TcamGroupAssignment a ) const override;

   bool allocateEtherTypeClassId( U32 unit, U16 etherType, U8 classId ) override {
      return call<&Gm::allocateEtherTypeClassId>( unit, etherType, classId );
   }
   bool allocateIpProtocolClassId( U32 unit, U16 ipProtocol, U8 classId ) override {
      return call<&Gm::allocateIpProtocolClassId>( unit, ipProtocol, classId );
   }
   bool allocateL4SrcPortClassId( U32 unit, U16 port, U8 classId ) override {
      return call<&Gm::allocateL4SrcPortClassId>( unit, port, classId );
   }
   bool allocateL4DstPortClassId( U32 unit, U16 port, U8 classId ) override {
      return call<&Gm::allocateL4DstPortClassId>( unit, port, classId );
   }
   bool allocateDstIpClassId( U32 unit, const Pylon::IpAddrWithFullMask& prefix,
                              U64 shiftedClassId ) override {
      return call<&Gm::allocateDstIpClassId>( unit, prefix, shiftedClassId );
   }
   bool allocateDstIp6ClassId( U32 unit, const Pylon::Ip6AddrWithFullMask& prefix,
                               U64 shiftedClassId ) override {
      return call<&Gm::allocateDstIp6ClassId>( unit, prefix, shiftedClassId );
   }

 private:
   // Keeps rangeCheckersExhausted equal to the decorated manager's.
   class RangeCheckerMirror : public Gm::NotifieeConst {
    public:
      RangeCheckerMirror( const Gm::Ptr& inner, Gm& mirror );
      void onRangeCheckersExhausted( U32 unit ) override;

    private:
      Gm& mirror_;
   };

   RecordingTcamGroupManager( CallRecorder& recorder, const Gm::Ptr& inner );
   void recordsCopy();

   template <auto M, class... A>
   auto call( A&&... args )
       -> decltype( ( std::declval<Gm&>().*M )( std::forward<A>( args )... ) ) {
      if ( !recorder_.recording() ) {
         return ( inner_.ptr()->*M )( std::forward<A>( args )... );
      }
      return record::Op<M>::record( recorder_.log(), 0, *inner_, std::forward<A>( args )... );
   }

   CallRecorder& recorder_;
   Gm::Ptr inner_;
   RangeCheckerMirror mirror_;
   mutable std::map<Halyard::TcamGroupAssignment, Halyard::HalyardBoundedTcamEntryManager::Ptr>
       bounded_;
   mutable std::map<Halyard::TcamGroupAssignment, Halyard::HalyardUnboundedTcamEntryManager::Ptr>
       unbounded_;
};

template <class Base>
void RecordingEntryManagerOps<Base>::entryIssued( U32 entry ) {
   if ( entry != 0 ) {
      this->groupManager()->tcamManagerForEntryIs( entry,
                                                   Halyard::HalyardTcamEntryManager::Ptr( this ) );
   }
}

template <class Base>
void RecordingEntryManagerOps<Base>::entryReleased( U32 entry ) {
   this->groupManager()->tcamManagerForEntryDel( entry );
}

}  // namespace Sim
