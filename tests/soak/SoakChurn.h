// The churn soak's random source: changes of configuration (lists, rules, bindings) drawn from
// small pools of addresses and ports so that rules overlap, ranges need checkers and blocks,
// and lists compete for interfaces; and packets aimed at the rules that stand, with addresses
// inside and just outside their prefixes, ports at the edges of their terms, and fragments.
//
// Draws are made one statement at a time, so that every compiler makes the same ones from a
// seed: a seed and a step number name one configuration.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "fennel/Packet.h"
#include "tests/soak/SoakModel.h"

namespace Soak {

class Churn {
 public:
   // `ethernets`: the numbers of the front-panel interfaces (EthernetN) bindings may use.
   // `payload`: the switch's chips match payload, so that ingress lists may carry payload terms.
   Churn( U32 seed, std::vector<U32> ethernets, bool payload );

   // Changes the model by one step (a list added or removed, a rule added, edited or removed,
   // an interface bound or unbound); answers what it did, in a line.
   std::string change( Model& model );

   // A packet for the model: most aimed at a rule of a bound list, on its interface.
   Fennel::Packet packet( const Model& model );

   U32 below( U32 n ) { return std::uniform_int_distribution<U32>( 0, n - 1 )( rng_ ); }
   bool chance( U32 percent ) { return below( 100 ) < percent; }

 private:
   std::string addList( Model& model );
   std::string removeList( Model& model );
   std::string addRule( Model& model );
   std::string editRule( Model& model );
   std::string removeRule( Model& model );
   std::string bind( Model& model );
   std::string unbind( Model& model );

   Rule rule( const List& list );
   Prefix prefix( Family family );
   PortTerm portTerm();
   Payload payload( Family family );
   U64 macAddr();

   Fennel::Packet aimed( const List& list, const Rule* rule );
   void ipHeaders( Family family, const Rule* rule, Fennel::Packet& p );
   std::array<U8, 16> near( Family family, const Prefix& prefix );
   U16 nearPort( const PortTerm& term );
   U64 nearMac( U64 value, U64 mask );
   U32 ethernet() { return ethernets_[below( static_cast<U32>( ethernets_.size() ) )]; }

   std::mt19937 rng_;
   std::vector<U32> ethernets_;
   bool payload_;
   U32 nextList_ = 0;
};

}  // namespace Soak
