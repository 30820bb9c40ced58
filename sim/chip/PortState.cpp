#include "sim/chip/PortState.h"

#include "platform/vesper/Exception.h"

namespace Sim {

ChipPorts::ChipPorts( U32 portCount, S32 localModule )
    : ports_( portCount ), localModule_( localModule ) {
   if ( portCount > PortBitmap::kCapacity ) {
      throw Vesper::RangeException( "a chip of " + std::to_string( portCount ) +
                                    " ports exceeds the port bitmap" );
   }
   allPorts_ = PortBitmap::firstPorts( portCount );
}

Status ChipPorts::portClassIs( U32 port, PortClassKind kind, U32 cls ) {
   if ( !valid( port ) ) {
      return Status::NotFound;
   }
   ports_[port].classes[static_cast<std::size_t>( kind )] = cls;
   return Status::Ok;
}

Status ChipPorts::stpStateIs( U32 port, StpState state ) {
   if ( !valid( port ) ) {
      return Status::NotFound;
   }
   ports_[port].stp = state;
   return Status::Ok;
}

Status ChipPorts::portTableFieldIs( U32 port, U32 table, U32 field, U32 value ) {
   if ( !valid( port ) ) {
      return Status::NotFound;
   }
   ports_[port].tableFields[{ table, field }] = value;
   return Status::Ok;
}

std::optional<U32> ChipPorts::portTableField( U32 port, U32 table, U32 field ) const {
   if ( !valid( port ) ) {
      return std::nullopt;
   }
   const auto& fields = ports_[port].tableFields;
   auto it = fields.find( { table, field } );
   if ( it == fields.end() ) {
      return std::nullopt;
   }
   return it->second;
}

Status ChipPorts::egressMaskIs( U32 port, S32 module, const PortBitmap& mask ) {
   if ( !valid( port ) ) {
      return Status::NotFound;
   }
   auto& masks = ports_[port].egressMasks;
   if ( module == kAllModules ) {
      masks.clear();
   }
   masks[module] = mask;
   return Status::Ok;
}

const PortBitmap& ChipPorts::maskFor( const Port& p, S32 module ) const {
   auto it = p.egressMasks.find( module );
   if ( it == p.egressMasks.end() ) {
      it = p.egressMasks.find( kAllModules );
   }
   return it == p.egressMasks.end() ? allPorts_ : it->second;
}

std::optional<PortBitmap> ChipPorts::egressMask( U32 port, S32 module ) const {
   if ( !valid( port ) ) {
      return std::nullopt;
   }
   return maskFor( ports_[port], module );
}

const PortBitmap& ChipPorts::localEgressMask( U32 port ) const {
   return maskFor( ports_[port], localModule_ );
}

Status ChipPorts::portControlIs( U32 port, U32 control, S32 value ) {
   if ( !valid( port ) ) {
      return Status::NotFound;
   }
   ports_[port].controls[control] = value;
   return Status::Ok;
}

std::optional<S32> ChipPorts::portControl( U32 port, U32 control ) const {
   if ( !valid( port ) ) {
      return std::nullopt;
   }
   const auto& controls = ports_[port].controls;
   auto it = controls.find( control );
   if ( it == controls.end() ) {
      return std::nullopt;
   }
   return it->second;
}

Status ChipVlans::l2ClassIs( U32 vlan, U32 cls ) {
   if ( vlan >= kVlanCount ) {
      return Status::NotFound;
   }
   vlans_[vlan].l2Class = cls;
   return Status::Ok;
}

Status ChipVlans::l3ClassIs( U32 vlan, U32 cls ) {
   if ( vlan >= kVlanCount ) {
      return Status::NotFound;
   }
   vlans_[vlan].l3Class = cls;
   return Status::Ok;
}

Status ChipVlans::egressL3ClassIs( U32 vlan, U32 cls ) {
   if ( vlan >= kVlanCount ) {
      return Status::NotFound;
   }
   vlans_[vlan].egressL3Class = cls;
   return Status::Ok;
}

}  // namespace Sim
