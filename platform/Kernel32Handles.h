#pragma once

#include "OvKernel32.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <memory>
#include <mutex>

namespace OvCc::Kernel32 {

/// A handle that no table has given out before; the kinds of handles never share one.
inline OvKernel32::Handle newHandle()
{
    static std::atomic<OvKernel32::Handle> last{0};
    return last += 4;
}

/// The open objects of one kind. An object that is taken out while another thread uses it lives
/// until that thread is done.
template <typename Object>
class HandleTable
{
public:
    OvKernel32::Handle add(std::shared_ptr<Object> object)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_objects.emplace(newHandle(), std::move(object)).first->first;
    }

    /// Null, and ErrorInvalidHandle, for an unknown handle.
    std::shared_ptr<Object> find(OvKernel32::Handle handle) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_objects.find(handle);
        if (found != m_objects.end())
            return found->second;
        OvKernel32::setLastError(OvKernel32::ErrorInvalidHandle);
        return {};
    }

    /// Takes the object out; whether it was there, with ErrorInvalidHandle if not.
    bool remove(OvKernel32::Handle handle)
    {
        const std::shared_ptr<Object> object = find(handle); // destroyed after the lock is gone
        const std::lock_guard<std::mutex> lock(m_mutex);
        return object && m_objects.erase(handle) > 0;
    }

    /// The handle of the first object that @p matches, or 0.
    template <typename Predicate>
    OvKernel32::Handle findIf(Predicate matches) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found =
                std::find_if(m_objects.begin(), m_objects.end(),
                             [&matches](const auto &each) { return matches(*each.second); });
        return found == m_objects.end() ? 0 : found->first;
    }

private:
    mutable std::mutex m_mutex;
    std::map<OvKernel32::Handle, std::shared_ptr<Object>> m_objects;
};

} // namespace OvCc::Kernel32
