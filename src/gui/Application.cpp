namespace quav{}
