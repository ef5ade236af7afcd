// The control queue: the lock by which one simulated camera runs on a machine, and the orders that other processes give
// it. Texts that are returned are empty, or what went wrong.
#pragma once

#include "queue.h"
#include "simulator.h"

#include <string>

namespace zv::sim {

// Creates the control queue and locks it, for as long as the process lives.
std::string claim_machine(Queue &control);

// Carries out the orders that wait in the queue; what is none is passed over.
void take_orders(Queue &control, Simulator &simulator);

inline constexpr char CLEAR_FAULTS[] = "clear";

// Gives the running camera an order: a fault rule, or CLEAR_FAULTS. Returns when the camera has taken it, so that what
// is sent to the camera afterwards comes after it. One that is stopped takes it when it goes on; this waits no longer
// than two seconds for that.
std::string give_order(const std::string &order);

// Asks the running camera for what is on its card.
std::string ask_for_media(std::string &listing);

} // namespace zv::sim
