// film_looks
