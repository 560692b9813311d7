// cube_container
