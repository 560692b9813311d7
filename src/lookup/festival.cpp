// festival
