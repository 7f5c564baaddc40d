// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>

#include <algorithm>
#include <vector>

class Event;
class EventAudience;
class EventLocation;
struct ScheduleObjects;

/** Objects sorted by id; of several with the same id only the first. */
template <typename T> class IdIndex
{
public:
    IdIndex() = default;
    explicit IdIndex(const QList<T *> &objects)
    {
        m_entries.reserve(static_cast<size_t>(objects.size()));
        for (T *object : objects)
            m_entries.push_back({ object->id(), object });
        std::stable_sort(m_entries.begin(), m_entries.end(),
                         [](const Entry &a, const Entry &b) { return a.id < b.id; });
        const auto hasSameId = [](const Entry &a, const Entry &b) { return a.id == b.id; };
        m_entries.erase(std::unique(m_entries.begin(), m_entries.end(), hasSameId),
                        m_entries.end());
    }

    [[nodiscard]] size_t size() const { return m_entries.size(); }

    /** The place of the object with this id; size() if there is none. */
    [[nodiscard]] size_t position(qint64 id) const
    {
        const auto found
            = std::lower_bound(m_entries.cbegin(), m_entries.cend(), id,
                               [](const Entry &entry, qint64 wanted) { return entry.id < wanted; });
        return found != m_entries.cend() && found->id == id
            ? static_cast<size_t>(found - m_entries.cbegin())
            : size();
    }

    /** The object with this id, or null. */
    [[nodiscard]] T *find(qint64 id) const
    {
        const size_t place = position(id);
        return place < size() ? m_entries[place].object : nullptr;
    }

private:
    struct Entry
    {
        qint64 id;
        T *object;
    };
    std::vector<Entry> m_entries;
};

/**
 * Finds the objects of a schedule by id. Searches sorted ids: no choice of ids makes it slow,
 * unlike a hash.
 */
class ScheduleIndex
{
public:
    ScheduleIndex() = default;
    explicit ScheduleIndex(const ScheduleObjects &objects);

    /** The first location, in display order, with this id, or null. */
    [[nodiscard]] EventLocation *location(qint64 id) const { return m_locations.find(id); }
    /** The first audience group, in display order, with this id, or null. */
    [[nodiscard]] EventAudience *audience(qint64 id) const { return m_audiences.find(id); }
    /** The events that name this location, sorted by time; empty if there is no such location. */
    [[nodiscard]] QList<Event *> eventsOfLocation(qint64 id) const;

private:
    IdIndex<EventLocation> m_locations;
    IdIndex<EventAudience> m_audiences;
    std::vector<QList<Event *>> m_events; ///< one list for each entry of m_locations
};
