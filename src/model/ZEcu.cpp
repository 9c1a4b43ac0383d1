#include "model/ZEcu.h"

#include <ZeKL/IConstModelItemVisitor.h>

#include <utility>

namespace Korvel {

ZEcu::ZEcu(std::unique_ptr<ZModelArena> arena)
    : m_arena(std::move(arena)),
      m_version("1.0"),
      m_conversions(m_arena.get()),
      m_instances(m_arena.get()),
      m_nrcs(m_arena.get()),
      m_protocol(ProtocolUds) {
    m_conversions.SetParent(this);
    m_instances.SetParent(this);
    m_nrcs.SetParent(this);
}

ZEcu::~ZEcu() {
    if (m_arena) {
        m_arena->BeginTeardown();
    }
}

const char* ZEcu::GetFormatVersion() const {
    return m_version.c_str();
}

uint32_t ZEcu::GetProtocol() const {
    return m_protocol;
}

void ZEcu::SetProtocol(uint32_t protocol) {
    m_protocol = protocol;
}

// The members are refilled in place, so pointers to the containers stay valid. The NRC table
// is deliberately not checked against itself: given its own table the ECU ends up with an empty
// one, as callers have always seen.
void ZEcu::SetNrcContainer(const INrcContainer& nrcs) {
    m_nrcs.Assign(nrcs);
    m_nrcs.SetParent(this);
}

const INrcContainer* ZEcu::GetNrcContainer() const {
    return &m_nrcs;
}

INrcContainer* ZEcu::GetNrcContainer() {
    return &m_nrcs;
}

void ZEcu::SetInstanceContainer(const IInstanceContainer& instances) {
    m_instances.Assign(instances);
    m_instances.SetParent(this);
}

const IInstanceContainer* ZEcu::GetInstanceContainer() const {
    return &m_instances;
}

ZInstanceContainer* ZEcu::GetInstanceContainer() {
    return &m_instances;
}

void ZEcu::SetConversionContainer(const IConversionContainer& conversions) {
    m_conversions.Assign(conversions);
    m_conversions.SetParent(this);
}

const IConversionContainer* ZEcu::GetConversionContainer() const {
    return &m_conversions;
}

IConversionContainer* ZEcu::GetConversionContainer() {
    return &m_conversions;
}

void ZEcu::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitEcu(*this);
}

void ZEcu::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitEcu(*this);
}

}  // namespace Korvel
