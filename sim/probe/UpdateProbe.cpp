#include "sim/probe/UpdateProbe.h"

#include <algorithm>

#include "platform/vesper/Exception.h"

namespace Sim {

namespace {

bool classAdmits( const std::optional<QualValue>& q, U64 value ) {
   return !q || ( value & q->maskU64() ) == ( q->dataU64() & q->maskU64() );
}

// The entries of a group's list that a packet at `port` meets, in lookup order.
template <class Lists, class Key>
std::vector<EntryId> portList( const Lists& lists, const Key& key, U32 port ) {
   std::vector<EntryId> out;
   const auto it = lists.find( key );
   if ( it == lists.end() ) {
      return out;
   }
   for ( const auto& v : it->second ) {
      if ( v.ports.test( port ) ) {
         out.push_back( v.id );
      }
   }
   return out;
}

bool isPrefix( const std::vector<EntryId>& part, const std::vector<EntryId>& whole ) {
   return part.size() <= whole.size() && std::equal( part.begin(), part.end(), whole.begin() );
}

std::string text( const std::vector<EntryId>& ids ) {
   std::string s = "[";
   for ( EntryId id : ids ) {
      s += ( s.size() > 1 ? " " : "" ) + std::to_string( id );
   }
   return s + "]";
}

}  // namespace

UpdateProbe::~UpdateProbe() {
   if ( open_ && hardwareCallObserver() == this ) {
      hardwareCallObserverIs( nullptr );
   }
}

void UpdateProbe::begin() {
   if ( hardwareCallObserver() && hardwareCallObserver() != this ) {
      throw Vesper::RangeException( "another probe observes the hardware calls" );
   }
   calls_ = 0;
   states_.clear();
   hardware_.clear();
   lastCall_ = "begin";
   old_ = snapshot();
   current_ = old_;
   open_ = true;
   hardwareCallObserverIs( this );
}

void UpdateProbe::beforeHardwareCall( std::string_view call ) {
   if ( !open_ || inside_ ) {
      return;
   }
   ++calls_;
   record( lastCall_ );
   lastCall_ = call;
}

void UpdateProbe::record( std::string_view after ) {
   GroupLists now = snapshot();
   if ( now == current_ ) {
      return;
   }
   State s{ std::string( after ), calls_, {} };
   for ( const auto& [key, list] : now ) {
      const auto it = current_.find( key );
      if ( it == current_.end() || it->second != list ) {
         s.changed.emplace( key, list );
      }
   }
   for ( const auto& [key, list] : current_ ) {
      if ( !now.count( key ) ) {
         s.changed.emplace( key, std::vector<Visible>{} );
      }
   }
   states_.push_back( std::move( s ) );
   current_ = std::move( now );
}

std::vector<std::string> UpdateProbe::end( std::size_t maxFindings ) {
   std::vector<std::string> findings;
   if ( !open_ ) {
      return findings;
   }
   record( lastCall_ );
   open_ = false;
   if ( hardwareCallObserver() == this ) {
      hardwareCallObserverIs( nullptr );
   }
   new_ = current_;
   if ( !states_.empty() ) {
      states_.pop_back();  // the last state is the new one
   }
   for ( const State& s : states_ ) {
      check( s, maxFindings, findings );
   }
   return findings;
}

void UpdateProbe::check( const State& s, std::size_t maxFindings,
                         std::vector<std::string>& out ) const {
   for ( const auto& [key, list] : s.changed ) {
      const ChipModel& chip = switch_.chip( key.unit );
      for ( U32 port = 0; port < chip.config().portCount; ++port ) {
         if ( out.size() >= maxFindings ) {
            return;
         }
         const std::vector<EntryId> seen = portList( s.changed, key, port );
         const std::vector<EntryId> before = portList( old_, key, port );
         const std::vector<EntryId> after = portList( new_, key, port );
         if ( isPrefix( seen, before ) || isPrefix( seen, after ) ) {
            continue;
         }
         const auto group = chip.group( key.group );
         out.push_back( "after " + s.after + " (call " + std::to_string( s.call ) + "): unit " +
                        std::to_string( key.unit ) + " " +
                        std::string( stageName( group ? group->stage : Stage::Ifp ) ) + " group " +
                        std::to_string( key.group ) + " port " + std::to_string( port ) +
                        " meets " + text( seen ) + ", a prefix of neither the old " +
                        text( before ) + " nor the new " + text( after ) );
      }
   }
}

UpdateProbe::GroupLists UpdateProbe::snapshot() {
   inside_ = true;
   GroupLists out;
   for ( U32 unit : switch_.units() ) {
      const ChipModel& chip = switch_.chip( unit );
      for ( GroupId group : chip.groups() ) {
         groupSnapshot( unit, chip, group, out );
      }
   }
   inside_ = false;
   return out;
}

void UpdateProbe::groupSnapshot( U32 unit, const ChipModel& chip, GroupId group, GroupLists& out ) {
   const Stage stage = chip.group( group )->stage;
   const PortClassKind kind =
       stage == Stage::Efp ? PortClassKind::FieldEgress : PortClassKind::FieldIngress;
   std::vector<Visible> list;
   for ( EntryId id : chip.entries( group ) ) {
      if ( !chip.entryInstalled( id ).value_or( false ) ) {
         hardware_.erase( { unit, id } );
         continue;
      }
      const Scope& scope = hardwareScope( unit, chip, id );
      if ( !chip.entryEnabled( id ).value_or( false ) ) {
         continue;
      }
      Visible v{ id, {} };
      for ( U32 port = 0; port < chip.config().portCount; ++port ) {
         const bool inPorts = !scope.inPorts || !scope.inPorts->mask.test( port ) ||
                              scope.inPorts->data.test( port );
         if ( inPorts && classAdmits( scope.portClass, *chip.ports().portClass( port, kind ) ) &&
              classAdmits( scope.outPort, port ) ) {
            v.ports.set( port );
         }
      }
      if ( v.ports.any() ) {
         list.push_back( v );
      }
   }
   if ( !list.empty() ) {
      out.emplace( GroupKey{ unit, group }, std::move( list ) );
   }
}

const UpdateProbe::Scope& UpdateProbe::hardwareScope( U32 unit, const ChipModel& chip,
                                                      EntryId id ) {
   const bool pending = chip.entryPending( id ).value_or( false );
   auto it = hardware_.find( { unit, id } );
   if ( pending && it != hardware_.end() ) {
      return it->second;
   }
   Scope s{ chip.inPorts( id ), chip.qualifier( id, QualId::InterfaceClassPort ),
            chip.qualifier( id, QualId::OutPort ) };
   return hardware_.insert_or_assign( { unit, id }, s ).first->second;
}

}  // namespace Sim
