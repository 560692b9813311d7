// plane_file
