// A ring of objects that others own, on their stacks: each is in it from its making, or its Join, to its end.
#pragma once

namespace tvut {

template <class Item>
class clsLink {
  public:
    clsLink() noexcept = default;
    clsLink(const clsLink&) = delete;
    clsLink& operator=(const clsLink&) = delete;

    void Join(clsLink& ring) noexcept {
        next_ = &ring;
        previous_ = ring.previous_;
        previous_->next_ = next_->previous_ = this;
    }
    void Leave() noexcept {
        previous_->next_ = next_;
        next_->previous_ = previous_;
        next_ = previous_ = this;
    }

    // Of the ring itself: the first item for which something holds; null when there is none.
    template <class Condition>
    Item* Find(Condition holds) noexcept {
        for (clsLink* link = next_; link != this; link = link->next_)
            if (Item* const item = static_cast<Item*>(link); holds(*item))
                return item;
        return nullptr;
    }
    Item* First() noexcept {
        return Find([](const Item&) { return true; });
    }

  private:
    clsLink* next_ = this;
    clsLink* previous_ = this;
};

} // namespace tvut
