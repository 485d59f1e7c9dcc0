<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name></name>
    <message id="maintenance_panel_Inputs">
        <source></source>
        <translation>Entrées</translation>
    </message>
    <message id="maintenance_panel_Outputs">
        <source></source>
        <translation>Sorties</translation>
    </message>
    <message id="connected">
        <source></source>
        <translation>Connecté</translation>
    </message>
    <message id="not_connected">
        <source></source>
        <translation>Non connecté</translation>
    </message>
    <message id="tools_connecting">
        <source></source>
        <translation>Connexion…</translation>
    </message>
    <message id="tools_closed">
        <source></source>
        <translation>Fermé</translation>
    </message>
    <message id="lamp_on">
        <source></source>
        <translation>allumé</translation>
    </message>
    <message id="lamp_off">
        <source></source>
        <translation>éteint</translation>
    </message>
    <message id="panel_live">
        <source></source>
        <translation>En direct</translation>
    </message>
    <message id="panel_live_hint">
        <source></source>
        <translation>Relire les valeurs en continu</translation>
    </message>
    <message id="panel_refresh">
        <source></source>
        <translation>Actualiser</translation>
    </message>
    <message id="panel_refresh_hint">
        <source></source>
        <translation>Relire toutes les valeurs (F5)</translation>
    </message>
    <message id="panel_not_connected">
        <source></source>
        <translation>L’appareil n’est pas connecté. Les valeurs seront lues dès son retour.</translation>
    </message>
    <message id="panel_not_connected_because">
        <source></source>
        <translation>L’appareil n’est pas connecté : %1. Les valeurs seront lues dès son retour.</translation>
    </message>
    <message id="panel_no_public_channels">
        <source></source>
        <translation>Cet outil n’a pas de voie publique. Donnez à une voie "visibility": "public" dans la configuration pour la voir ici.</translation>
    </message>
    <message id="page_none">
        <source></source>
        <translation>Le plugin « %1 » n’a pas de page de maintenance.</translation>
    </message>
    <message id="page_broken">
        <source></source>
        <translation>La page de maintenance du plugin « %1 » contient des erreurs :
%2</translation>
    </message>
    <message id="page_no_tool">
        <source></source>
        <translation>Cet outil n’existe pas. Choisissez un des outils à gauche.</translation>
    </message>
    <message id="tools_title">
        <source></source>
        <translation>Outils</translation>
    </message>
    <message id="tools_detail" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%1 · %Ln voie</numerusform>
            <numerusform>%1 · %Ln voies</numerusform>
        </translation>
    </message>
    <message id="tools_empty">
        <source></source>
        <translation>Il n’y a pas d’outil. Ajoutez-en un sous « tools » dans le fichier de configuration.</translation>
    </message>
    <message id="tools_dark">
        <source></source>
        <translation>Sombre</translation>
    </message>
    <message id="board_filter">
        <source></source>
        <translation>Filtrer</translation>
    </message>
    <message id="board_freeze">
        <source></source>
        <translation>Figer</translation>
    </message>
    <message id="board_resume">
        <source></source>
        <translation>Reprendre</translation>
    </message>
    <message id="board_freeze_hint">
        <source></source>
        <translation>Arrêter les courbes pour les examiner</translation>
    </message>
    <message id="board_not_connected">
        <source></source>
        <translation>L’appareil n’est pas connecté.</translation>
    </message>
    <message id="board_not_connected_because">
        <source></source>
        <translation>L’appareil n’est pas connecté : %1.</translation>
    </message>
    <message id="board_connecting">
        <source></source>
        <translation>Connexion à l’appareil en cours…</translation>
    </message>
    <message id="board_unknown">
        <source></source>
        <translation>inconnue</translation>
    </message>
    <message id="board_empty">
        <source></source>
        <translation>L’appareil n’a pas de ligne. Nommez-les sous « device », « lines » dans le fichier de configuration.</translation>
    </message>
    <message id="board_no_match">
        <source></source>
        <translation>Aucune ligne ne contient « %1 » dans son nom ou ses voies. Effacez le filtre pour toutes les voir.</translation>
    </message>
    <message id="form_title">
        <source></source>
        <translation>Commande</translation>
    </message>
    <message id="form_command">
        <source></source>
        <translation>Commande</translation>
    </message>
    <message id="form_run">
        <source></source>
        <translation>Lancer</translation>
    </message>
    <message id="form_run_hint">
        <source></source>
        <translation>Lancer la commande (Ctrl+Entrée)</translation>
    </message>
    <message id="form_default">
        <source></source>
        <translation>par défaut : %1</translation>
    </message>
    <message id="form_not_given">
        <source></source>
        <translation>non fourni</translation>
    </message>
    <message id="form_channel">
        <source></source>
        <translation>une voie de l’outil</translation>
    </message>
    <message id="form_sections">
        <source></source>
        <translation>Sections</translation>
    </message>
    <message id="form_sections_hint">
        <source></source>
        <translation>Plus, en objet JSON</translation>
    </message>
    <message id="form_sections_expected">
        <source></source>
        <translation>Sections : un objet JSON est attendu, {"nom": [ … ]}</translation>
    </message>
    <message id="form_sections_broken">
        <source></source>
        <translation>Sections : pas de JSON à partir du caractère %1</translation>
    </message>
    <message id="form_no_command">
        <source></source>
        <translation>Choisissez un outil pour voir ses commandes.</translation>
    </message>
    <message id="orders_title">
        <source></source>
        <translation>Ordres</translation>
    </message>
    <message id="orders_stop">
        <source></source>
        <translation>Arrêter</translation>
    </message>
    <message id="orders_stop_hint">
        <source></source>
        <translation>Arrêter cet ordre (Suppr)</translation>
    </message>
    <message id="orders_stop_all">
        <source></source>
        <translation>Tout arrêter</translation>
    </message>
    <message id="orders_clear">
        <source></source>
        <translation>Effacer</translation>
    </message>
    <message id="orders_state_running">
        <source></source>
        <translation>en cours</translation>
    </message>
    <message id="orders_state_listening">
        <source></source>
        <translation>à l’écoute</translation>
    </message>
    <message id="orders_state_done">
        <source></source>
        <translation>terminé</translation>
    </message>
    <message id="orders_state_failed">
        <source></source>
        <translation>échoué</translation>
    </message>
    <message id="orders_state_stopped">
        <source></source>
        <translation>arrêté</translation>
    </message>
    <message id="orders_state_problem">
        <source></source>
        <translation>problème</translation>
    </message>
    <message id="orders_events" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln événement, à %1</numerusform>
            <numerusform>%Ln événements, le dernier à %1</numerusform>
        </translation>
    </message>
    <message id="orders_lost" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln événement perdu</numerusform>
            <numerusform>%Ln événements perdus</numerusform>
        </translation>
    </message>
    <message id="orders_rejected" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln réponse rejetée</numerusform>
            <numerusform>%Ln réponses rejetées</numerusform>
        </translation>
    </message>
    <message id="orders_empty">
        <source></source>
        <translation>Aucun ordre pour l’instant. Choisissez une commande et appuyez sur Lancer.</translation>
    </message>
    <message id="board_resume_hint">
        <source></source>
        <translation>Laisser défiler les courbes</translation>
    </message>
    <message id="board_held">
        <source></source>
        <translation>Courbes figées</translation>
    </message>
    <message id="panel_too_narrow">
        <source></source>
        <translation>La page est trop étroite pour certaines de ses valeurs. Élargissez-la.</translation>
    </message>
    <message id="board_past">
        <source></source>
        <translation>Dans le passé</translation>
    </message>
    <message id="courses_title">
        <source></source>
        <translation>Courbes des lignes</translation>
    </message>
    <message id="courses_hint">
        <source></source>
        <translation>Molette : zoom · glisser : déplacer · 1, 2 : curseurs · F : tout · L : direct · Espace : figer</translation>
    </message>
    <message id="cursors_one">
        <source></source>
        <translation>Curseur %1</translation>
    </message>
    <message id="cursors_between">
        <source></source>
        <translation>1–2 : %1</translation>
    </message>
    <message id="measure_high">
        <source></source>
        <translation>haut</translation>
    </message>
    <message id="measure_low">
        <source></source>
        <translation>bas</translation>
    </message>
    <message id="measure_width">
        <source></source>
        <translation>%1 pendant %2</translation>
    </message>
    <message id="measure_period">
        <source></source>
        <translation>période %1</translation>
    </message>
    <message id="measure_duty">
        <source></source>
        <translation>rapport cyclique %1 %</translation>
    </message>
    <message id="board_driven">
        <source></source>
        <translation>pilotée</translation>
    </message>
    <message id="page_click_failed">
        <source></source>
        <translation>%1 : %2</translation>
    </message>
    <message id="page_dismiss">
        <source></source>
        <translation>Masquer</translation>
    </message>
    <message id="board_waiting">
        <source></source>
        <translation>en attente</translation>
    </message>
    <message id="board_old">
        <source></source>
        <translation>ancienne</translation>
    </message>
    <message id="board_failed">
        <source></source>
        <translation>en échec</translation>
    </message>
    <message id="board_blinking">
        <source></source>
        <translation>◐ clignote</translation>
    </message>
    <message id="orders_page">
        <source></source>
        <translation>page · %1</translation>
    </message>
    <message id="orders_reads" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln lecture de la page</numerusform>
            <numerusform>%Ln lectures de la page</numerusform>
        </translation>
    </message>
    <message id="orders_reads_failed" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln en échec</numerusform>
            <numerusform>%Ln en échec</numerusform>
        </translation>
    </message>
    <message id="tools_all_off">
        <source></source>
        <translation>Tout éteindre</translation>
    </message>
    <message id="tools_all_off_hint">
        <source></source>
        <translation>Éteindre tout ce que les outils pilotent</translation>
    </message>
    <message id="form_needed">
        <source></source>
        <translation>Nécessaire : sans cela, la commande ne fait rien.</translation>
    </message>
    <message id="glyph_analogue">
        <source></source>
        <translation>Valeur analogique</translation>
    </message>
    <message id="form_no_channel">
        <source></source>
        <translation>L’outil n’a pas de voie « %1 ».</translation>
    </message>
    <message id="orders_show_events">
        <source></source>
        <translation>Événements</translation>
    </message>
    <message id="orders_show_events_hint">
        <source></source>
        <translation>Montrer les événements avec leurs heures (Entrée)</translation>
    </message>
    <message id="events_title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%1 : %Ln événement</numerusform>
            <numerusform>%1 : %Ln événements</numerusform>
        </translation>
    </message>
    <message id="events_copy">
        <source></source>
        <translation>Copier</translation>
    </message>
    <message id="events_copy_hint">
        <source></source>
        <translation>Copier tous les événements, séparés par des virgules</translation>
    </message>
    <message id="events_save">
        <source></source>
        <translation>Enregistrer</translation>
    </message>
    <message id="events_close">
        <source></source>
        <translation>Fermer</translation>
    </message>
    <message id="save_file">
        <source></source>
        <translation>Fichier</translation>
    </message>
    <message id="save_done">
        <source></source>
        <translation>Enregistré sous %1</translation>
    </message>
    <message id="save_exists">
        <source></source>
        <translation>%1 existe déjà ; enregistrez encore une fois pour le remplacer.</translation>
    </message>
    <message id="save_replace">
        <source></source>
        <translation>Remplacer</translation>
    </message>
    <message id="save_cancel">
        <source></source>
        <translation>Annuler</translation>
    </message>
    <message id="save_no_file">
        <source></source>
        <translation>« %1 » ne désigne pas un fichier ordinaire.</translation>
    </message>
    <message id="save_failed">
        <source></source>
        <translation>Impossible d’écrire %1 : %2</translation>
    </message>
    <message id="fold_hide_tools">
        <source></source>
        <translation>Replier les outils (Ctrl+1)</translation>
    </message>
    <message id="fold_show_tools">
        <source></source>
        <translation>Montrer les outils (Ctrl+1)</translation>
    </message>
    <message id="fold_hide_page">
        <source></source>
        <translation>Replier la page (Ctrl+2)</translation>
    </message>
    <message id="fold_show_page">
        <source></source>
        <translation>Montrer la page (Ctrl+2)</translation>
    </message>
    <message id="fold_hide_lower">
        <source></source>
        <translation>Replier commande et ordres (Ctrl+3)</translation>
    </message>
    <message id="fold_show_lower">
        <source></source>
        <translation>Montrer commande et ordres (Ctrl+3)</translation>
    </message>
    <message id="lines_menu">
        <source></source>
        <translation>Lignes</translation>
    </message>
    <message id="lines_menu_hint">
        <source></source>
        <translation>Masquer, déplacer et grouper les lignes</translation>
    </message>
    <message id="lines_hide">
        <source></source>
        <translation>Masquer les lignes choisies</translation>
    </message>
    <message id="lines_show_all">
        <source></source>
        <translation>Montrer toutes les lignes</translation>
    </message>
    <message id="lines_show_hidden" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Montrer %Ln ligne masquée</numerusform>
            <numerusform>Montrer %Ln lignes masquées</numerusform>
        </translation>
    </message>
    <message id="lines_up">
        <source></source>
        <translation>Vers le haut</translation>
    </message>
    <message id="lines_down">
        <source></source>
        <translation>Vers le bas</translation>
    </message>
    <message id="lines_group">
        <source></source>
        <translation>Grouper par nom</translation>
    </message>
    <message id="lines_ungroup">
        <source></source>
        <translation>Ne plus grouper</translation>
    </message>
    <message id="lines_trigger">
        <source></source>
        <translation>Déclencheur : ↑ ↓ ↕ 1 0</translation>
    </message>
    <message id="trigger_text" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Déclencheur %1 : %Ln fois</numerusform>
            <numerusform>Déclencheur %1 : %Ln fois</numerusform>
        </translation>
    </message>
    <message id="trigger_mode">
        <source></source>
        <translation>Où les courbes s’arrêtent</translation>
    </message>
    <message id="trigger_at">
        <source></source>
        <translation>arrêter là</translation>
    </message>
    <message id="trigger_around">
        <source></source>
        <translation>arrêter autour</translation>
    </message>
    <message id="trigger_from">
        <source></source>
        <translation>arrêter après</translation>
    </message>
    <message id="trigger_none">
        <source></source>
        <translation>compter seulement</translation>
    </message>
    <message id="trigger_clear">
        <source></source>
        <translation>Effacer</translation>
    </message>
    <message id="selection_measure" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln front · %1 à %2 · moyenne %3</numerusform>
            <numerusform>%Ln fronts · %1 à %2 · moyenne %3</numerusform>
        </translation>
    </message>
    <message id="tools_help">
        <source></source>
        <translation>Aide</translation>
    </message>
    <message id="tools_help_hint">
        <source></source>
        <translation>Touches, manuel et versions (F1)</translation>
    </message>
    <message id="export_courses">
        <source></source>
        <translation>Exporter : CSV, VCD, SVG, PNG</translation>
    </message>
    <message id="export_kinds">
        <source></source>
        <translation>Le nom doit finir par .csv, .vcd, .svg ou .png.</translation>
    </message>
    <message id="record_begin">
        <source></source>
        <translation>Enregistrer une trace</translation>
    </message>
    <message id="record_stop">
        <source></source>
        <translation>Arrêter la trace</translation>
    </message>
    <message id="record_runs">
        <source></source>
        <translation>Une trace est déjà enregistrée.</translation>
    </message>
    <message id="record_begun">
        <source></source>
        <translation>Enregistrement dans %1</translation>
    </message>
    <message id="split_tools">
        <source></source>
        <translation>Largeur des outils</translation>
    </message>
    <message id="split_page">
        <source></source>
        <translation>Largeur de la page</translation>
    </message>
    <message id="split_lower">
        <source></source>
        <translation>Hauteur de la commande et des ordres</translation>
    </message>
    <message id="split_command">
        <source></source>
        <translation>Largeur de la commande</translation>
    </message>
    <message id="close_title">
        <source></source>
        <translation>Fermer la fenêtre ?</translation>
    </message>
    <message id="close_running" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%Ln ordre est en cours et serait arrêté.</numerusform>
            <numerusform>%Ln ordres sont en cours et seraient arrêtés.</numerusform>
        </translation>
    </message>
    <message id="close_blinking">
        <source></source>
        <translation>Ces lignes clignotent ; cela cesserait, et chacune resterait comme elle est alors : %1.</translation>
    </message>
    <message id="close_blinking_ends">
        <source></source>
        <translation>Ces lignes clignotent ; cela cesserait : %1.</translation>
    </message>
    <message id="close_simulated">
        <source></source>
        <translation>Rien ne reste actif : les lignes simulées disparaissent avec le banc.</translation>
    </message>
    <message id="close_released">
        <source></source>
        <translation>Une ligne relâchée garde ou non son niveau, selon son pilote.</translation>
    </message>
    <message id="close_recording">
        <source></source>
        <translation>Une trace est enregistrée ; elle se terminerait.</translation>
    </message>
    <message id="close_nothing_on">
        <source></source>
        <translation>Aucune sortie n’est active.</translation>
    </message>
    <message id="close_stays_on">
        <source></source>
        <translation>Ces sorties sont actives et le resteraient : %1.</translation>
    </message>
    <message id="close_goes_off">
        <source></source>
        <translation>Ces sorties seraient éteintes : %1.</translation>
    </message>
    <message id="close_more" numerus="yes">
        <source></source>
        <translation>
            <numerusform>%1 et %Ln autre</numerusform>
            <numerusform>%1 et %Ln autres</numerusform>
        </translation>
    </message>
    <message id="close_stop">
        <source></source>
        <translation>Tout arrêter et fermer</translation>
    </message>
    <message id="close_anyway">
        <source></source>
        <translation>Fermer</translation>
    </message>
    <message id="help_title">
        <source></source>
        <translation>Touches</translation>
    </message>
    <message id="key_panes">
        <source></source>
        <translation>F6, Maj+F6</translation>
    </message>
    <message id="key_run">
        <source></source>
        <translation>Ctrl+Entrée</translation>
    </message>
    <message id="key_cursors">
        <source></source>
        <translation>1  2  ←  →  Échap</translation>
    </message>
    <message id="key_choose">
        <source></source>
        <translation>Maj+↑↓</translation>
    </message>
    <message id="key_row_height">
        <source></source>
        <translation>Maj+Alt+↑↓</translation>
    </message>
    <message id="help_key">
        <source></source>
        <translation>%1 : %2</translation>
    </message>
    <message id="script_outcome">
        <source></source>
        <translation>%1 : %2</translation>
    </message>
    <message id="help_space">
        <source></source>
        <translation>Espace</translation>
    </message>
    <message id="help_f1">
        <source></source>
        <translation>cette aide</translation>
    </message>
    <message id="help_f5">
        <source></source>
        <translation>relit la page</translation>
    </message>
    <message id="help_f6">
        <source></source>
        <translation>le volet suivant, le précédent</translation>
    </message>
    <message id="help_find">
        <source></source>
        <translation>filtre les lignes ; Échap efface le filtre</translation>
    </message>
    <message id="help_fold">
        <source></source>
        <translation>replient outils, page, commande et ordres</translation>
    </message>
    <message id="help_run">
        <source></source>
        <translation>lance la commande de n’importe où</translation>
    </message>
    <message id="help_zoom">
        <source></source>
        <translation>plus et moins de détail, tout, suivre le présent</translation>
    </message>
    <message id="help_freeze">
        <source></source>
        <translation>sur les courbes : les fige ou les relance ; sur la liste : commute la ligne</translation>
    </message>
    <message id="help_cursors">
        <source></source>
        <translation>curseurs au pointeur, de front en front, les enlever</translation>
    </message>
    <message id="help_trigger">
        <source></source>
        <translation>le déclencheur suivant de la ligne</translation>
    </message>
    <message id="help_choose">
        <source></source>
        <translation>plusieurs lignes, dont ← et → suivent les fronts</translation>
    </message>
    <message id="help_lines">
        <source></source>
        <translation>masquer, grouper et déplacer des lignes</translation>
    </message>
    <message id="help_row_height">
        <source></source>
        <translation>la hauteur des rangées</translation>
    </message>
    <message id="help_files">
        <source></source>
        <translation>exporter les courbes, enregistrer une trace</translation>
    </message>
    <message id="help_manual">
        <source></source>
        <translation>Le manuel : « man appvantor », ou docs/user-guide.md du projet.</translation>
    </message>
    <message id="failure_wrongInvocation">
        <source></source>
        <translation>appel incorrect : %1</translation>
    </message>
    <message id="failure_refusedByCommand">
        <source></source>
        <translation>refusé par la commande : %1</translation>
    </message>
    <message id="failure_nothingSent">
        <source></source>
        <translation>rien n’a été envoyé : %1</translation>
    </message>
    <message id="failure_replyRejected">
        <source></source>
        <translation>réponse rejetée : %1</translation>
    </message>
    <message id="failure_refusedByDevice">
        <source></source>
        <translation>refusé par l’appareil : %1</translation>
    </message>
    <message id="failure_deviceUnreachable">
        <source></source>
        <translation>appareil injoignable : %1</translation>
    </message>
    <message id="failure_timedOut">
        <source></source>
        <translation>délai dépassé : %1</translation>
    </message>
    <message id="failure_stopped">
        <source></source>
        <translation>arrêté : %1</translation>
    </message>
    <message id="failure_toolClosed">
        <source></source>
        <translation>outil fermé : %1</translation>
    </message>
    <message id="command_setValue">
        <source></source>
        <translation>Donner un état à une ligne</translation>
    </message>
    <message id="command_switchValue">
        <source></source>
        <translation>Inverser l’état d’une ligne</translation>
    </message>
    <message id="command_getValue">
        <source></source>
        <translation>Lire une ligne</translation>
    </message>
    <message id="command_startListening">
        <source></source>
        <translation>Écouter les événements d’une voie</translation>
    </message>
    <message id="command_init">
        <source></source>
        <translation>Donner aux lignes leurs valeurs initiales</translation>
    </message>
    <message id="command_listenToAll">
        <source></source>
        <translation>Écouter toutes les lignes binaires</translation>
    </message>
    <message id="command_stopTheCommand">
        <source></source>
        <translation>Arrêter l’ordre en cours</translation>
    </message>
    <message id="command_stopListening">
        <source></source>
        <translation>Arrêter l’écoute</translation>
    </message>
    <message id="parameter_channel">
        <source></source>
        <translation>Voie de l’outil</translation>
    </message>
    <message id="parameter_value">
        <source></source>
        <translation>Valeur</translation>
    </message>
    <message id="parameter_state">
        <source></source>
        <translation>ON, OFF, PULSE ou BLINK</translation>
    </message>
    <message id="parameter_duration">
        <source></source>
        <translation>Durée du cycle, en ms</translation>
    </message>
    <message id="parameter_dutyCycle">
        <source></source>
        <translation>Rapport cyclique, en %</translation>
    </message>
    <message id="parameter_edge">
        <source></source>
        <translation>RE : front montant, FE : descendant, HL : niveau haut, LL : bas</translation>
    </message>
    <message id="file_menu">
        <source></source>
        <translation>Fichier</translation>
    </message>
    <message id="file_menu_hint">
        <source></source>
        <translation>Ouvrir et recharger des configurations</translation>
    </message>
    <message id="file_open">
        <source></source>
        <translation>Ouvrir une configuration…</translation>
    </message>
    <message id="file_reload">
        <source></source>
        <translation>Recharger</translation>
    </message>
    <message id="open_title">
        <source></source>
        <translation>Ouvrir une configuration</translation>
    </message>
    <message id="open_list">
        <source></source>
        <translation>Dossiers et fichiers</translation>
    </message>
    <message id="open_nothing">
        <source></source>
        <translation>Aucun fichier ne commence ainsi.</translation>
    </message>
    <message id="open_open">
        <source></source>
        <translation>Ouvrir</translation>
    </message>
    <message id="open_no_file">
        <source></source>
        <translation>%1 : un fichier était attendu</translation>
    </message>
    <message id="mistakes_hint">
        <source></source>
        <translation>Le banc continue tel quel. Un clic ou Entrée copie une erreur.</translation>
    </message>
    <message id="mistakes_copied">
        <source></source>
        <translation>copié</translation>
    </message>
    <message id="mistakes_retry">
        <source></source>
        <translation>Réessayer</translation>
    </message>
    <message id="mistakes_retry_hint">
        <source></source>
        <translation>Lire le fichier une nouvelle fois</translation>
    </message>
    <message id="mistakes_copy_all">
        <source></source>
        <translation>Tout copier</translation>
    </message>
    <message id="replace_title">
        <source></source>
        <translation>Ouvrir l’autre configuration ?</translation>
    </message>
    <message id="replace_stop">
        <source></source>
        <translation>Tout arrêter et ouvrir</translation>
    </message>
    <message id="replace_anyway">
        <source></source>
        <translation>Ouvrir</translation>
    </message>
    <message id="help_open">
        <source></source>
        <translation>ouvrir une configuration, recharger celle-ci</translation>
    </message>
    <message id="mistakes_title" numerus="yes">
        <source></source>
        <translation>
            <numerusform>Non ouverte : une erreur</numerusform>
            <numerusform>Non ouverte : %Ln erreurs</numerusform>
        </translation>
    </message>
    <message id="file_script">
        <source></source>
        <translation>Exécuter un script…</translation>
    </message>
    <message id="script_title">
        <source></source>
        <translation>Exécuter un script</translation>
    </message>
    <message id="script_run">
        <source></source>
        <translation>Exécuter</translation>
    </message>
    <message id="script_stop">
        <source></source>
        <translation>Arrêter</translation>
    </message>
    <message id="script_stopped">
        <source></source>
        <translation>arrêté à la ligne %1</translation>
    </message>
    <message id="script_done">
        <source></source>
        <translation>terminé</translation>
    </message>
    <message id="close_script">
        <source></source>
        <translation>Un script est en cours et serait arrêté.</translation>
    </message>
    <message id="help_script">
        <source></source>
        <translation>exécuter les ordres d’un fichier</translation>
    </message>
    <message id="export_too_high">
        <source></source>
        <translation>Une image ne peut contenir autant de lignes ; en masquer, ou les enregistrer en .svg.</translation>
    </message>
    <message id="the device is not connected">
        <source></source>
        <translation>l’appareil n’est pas connecté</translation>
    </message>
    <message id="the device is closed">
        <source></source>
        <translation>l’appareil est fermé</translation>
    </message>
    <message id="the device was closed">
        <source></source>
        <translation>l’appareil a été fermé</translation>
    </message>
    <message id="the device is gone">
        <source></source>
        <translation>l’appareil n’est plus là</translation>
    </message>
    <message id="the tool has no device">
        <source></source>
        <translation>l’outil n’a pas d’appareil</translation>
    </message>
    <message id="the tool was closed">
        <source></source>
        <translation>l’outil a été fermé</translation>
    </message>
    <message id="the command refused to run">
        <source></source>
        <translation>la commande a refusé de démarrer</translation>
    </message>
    <message id="the command failed">
        <source></source>
        <translation>la commande a échoué</translation>
    </message>
    <message id="the command sent no device request">
        <source></source>
        <translation>la commande n’a rien demandé à l’appareil</translation>
    </message>
    <message id="the command waits for nothing more, without having reported %1">
        <source></source>
        <translation>la commande n’attend plus rien, sans avoir rendu %1</translation>
    </message>
    <message id="reply rejected">
        <source></source>
        <translation>la réponse ne convient pas</translation>
    </message>
    <message id="stopped before it was complete">
        <source></source>
        <translation>arrêté avant la fin</translation>
    </message>
    <message id="no running order to stop">
        <source></source>
        <translation>aucun ordre en cours à arrêter</translation>
    </message>
    <message id="no running order with these arguments to stop">
        <source></source>
        <translation>aucun ordre en cours avec ces arguments à arrêter</translation>
    </message>
    <message id="no reply to %1 within %2 ms">
        <source></source>
        <translation>pas de réponse à %1 en %2 ms</translation>
    </message>
    <message id="too many treatments wait">
        <source></source>
        <translation>trop de demandes sont en attente</translation>
    </message>
    <message id="a text">
        <source></source>
        <translation>un texte</translation>
    </message>
    <message id="true or false">
        <source></source>
        <translation>true ou false</translation>
    </message>
    <message id="any value">
        <source></source>
        <translation>une valeur</translation>
    </message>
    <message id="the simulated board is unplugged">
        <source></source>
        <translation>la carte simulée est débranchée</translation>
    </message>
    <message id="the chip %1 is gone; plug it in or load its driver, and the bench goes on">
        <source></source>
        <translation>la puce %1 n’est plus là ; branchez-la ou chargez son pilote, et le banc continue</translation>
    </message>
    <message id="the chip %1: permission denied; %2">
        <source></source>
        <translation>la puce %1 : permission refusée ; %2</translation>
    </message>
    <message id="%1 does not answer: %2; the kernel's log (&quot;sudo dmesg&quot;) may tell why">
        <source></source>
        <translation>%1 ne répond pas : %2 ; le journal du noyau (« sudo dmesg ») dit peut-être pourquoi</translation>
    </message>
    <message id="%1: %2 edges came faster than they could be read, and are lost">
        <source></source>
        <translation>%1 : %2 fronts sont venus trop vite pour être lus et sont perdus</translation>
    </message>
    <message id="%1: %2 edges of lines that are still now came faster than they could be read, and are lost">
        <source></source>
        <translation>%1 : %2 fronts de lignes maintenant immobiles sont venus trop vite pour être lus et sont perdus</translation>
    </message>
    <message id="too much waits for the broker already">
        <source></source>
        <translation>trop de messages attendent déjà le serveur MQTT</translation>
    </message>
    <message id="%1: it does not answer">
        <source></source>
        <translation>%1 : pas de réponse</translation>
    </message>
    <message id="&quot;%1&quot;">
        <source></source>
        <translation>« %1 »</translation>
    </message>
    <message id="&quot;%1&quot; (%2)">
        <source></source>
        <translation>« %1 » (%2)</translation>
    </message>
    <message id="&quot;%1&quot; follows a waveform, expected a free input">
        <source></source>
        <translation>« %1 » suit une forme d’onde ; une entrée libre était attendue</translation>
    </message>
    <message id="&quot;%1&quot; has a wire already, expected a free input">
        <source></source>
        <translation>« %1 » a déjà un fil ; une entrée libre était attendue</translation>
    </message>
    <message id="&quot;%1&quot; names no channel">
        <source></source>
        <translation>« %1 » ne nomme aucune voie</translation>
    </message>
    <message id="&quot;%1&quot; of channel &quot;%2&quot;: %3">
        <source></source>
        <translation>« %1 » pour la voie « %2 » : %3</translation>
    </message>
    <message id="&quot;%1&quot; stands for the channel %2 already">
        <source></source>
        <translation>« %1 » désigne déjà la voie %2</translation>
    </message>
    <message id="&quot;end&quot; without a &quot;repeat&quot;">
        <source></source>
        <translation>« end » sans « repeat »</translation>
    </message>
    <message id="&quot;listenToAll&quot; tells %1 binary lines at most, the device has %2">
        <source></source>
        <translation>« listenToAll » rapporte au plus %1 lignes binaires, l’appareil en a %2</translation>
    </message>
    <message id="&quot;repeat&quot; without an &quot;end&quot;">
        <source></source>
        <translation>« repeat » sans « end »</translation>
    </message>
    <message id="%1 (character %2 of %3)">
        <source></source>
        <translation>%1 (caractère %2 de %3)</translation>
    </message>
    <message id="%1 cannot be %2 as configured: %3; its driver may not offer this direction, bias, drive or debounce, or edges at all">
        <source></source>
        <translation>%1 ne peut pas être %2 comme configuré : %3 ; son pilote n’offre peut-être pas cette direction, cette polarisation, cette commande, cet antirebond, ou aucun front</translation>
    </message>
    <message id="%1 cannot be read: %2">
        <source></source>
        <translation>lecture de %1 impossible : %2</translation>
    </message>
    <message id="%1 changes of lines came too fast and were left out">
        <source></source>
        <translation>%1 changements de lignes sont venus trop vite et ont été omis</translation>
    </message>
    <message id="%1 is an input and cannot be written; &quot;direction&quot;: &quot;out&quot; in the configuration makes it an output">
        <source></source>
        <translation>%1 est une entrée et ne peut pas être commandée ; "direction": "out" dans la configuration en fait une sortie</translation>
    </message>
    <message id="%1 of channel &quot;%2&quot;">
        <source></source>
        <translation>%1 pour la voie « %2 »</translation>
    </message>
    <message id="%1, %2">
        <source></source>
        <translation>%1, %2</translation>
    </message>
    <message id="%1: %2">
        <source></source>
        <translation>%1 : %2</translation>
    </message>
    <message id="%1: expected USER:PASSWORD in the first line">
        <source></source>
        <translation>%1 : USER:PASSWORD était attendu sur la première ligne</translation>
    </message>
    <message id="%1: expected lines of at most %2 bytes">
        <source></source>
        <translation>%1 : des lignes de %2 octets au plus étaient attendues</translation>
    </message>
    <message id="%1: it made no instance that this host can use for the tool &quot;%2&quot;">
        <source></source>
        <translation>%1 : il n’a pas fait d’instance utilisable par cet hôte pour l’outil « %2 »</translation>
    </message>
    <message id="%1: the orders cannot be read: %2">
        <source></source>
        <translation>%1 : les ordres ne peuvent pas être lus : %2</translation>
    </message>
    <message id="%1: the trace cannot be written: %2">
        <source></source>
        <translation>%1 : la trace ne peut pas être écrite : %2</translation>
    </message>
    <message id="--config: expected none beside a rig on a broker, which describes itself">
        <source></source>
        <translation>--config : aucune n’était attendue à côté d’un banc sur un serveur MQTT, qui se décrit lui-même</translation>
    </message>
    <message id="1 to %1">
        <source></source>
        <translation>de 1 à %1</translation>
    </message>
    <message id="; &quot;help&quot; lists what there is">
        <source></source>
        <translation> ; « help » donne la liste</translation>
    </message>
    <message id="; did you mean &quot;%1&quot;?">
        <source></source>
        <translation> ; vouliez-vous dire « %1 » ?</translation>
    </message>
    <message id="ON or OFF">
        <source></source>
        <translation>ON ou OFF</translation>
    </message>
    <message id="ON, OFF, PULSE:MS, or BLINK:MS:PERCENT with a cycle of 1 to %1 milliseconds and 0 to 100 percent">
        <source></source>
        <translation>ON, OFF, PULSE:MS, ou BLINK:MS:PERCENT avec un cycle de 1 à %1 millisecondes et de 0 à 100 pour cent</translation>
    </message>
    <message id="a channel cannot be read">
        <source></source>
        <translation>une voie ne peut pas être lue</translation>
    </message>
    <message id="a file in /etc/udev/rules.d with the rule SUBSYSTEM==&quot;gpio&quot;, GROUP=&quot;gpio&quot;, MODE=&quot;0660&quot; gives it to the group &quot;gpio&quot;, which you then join">
        <source></source>
        <translation>un fichier dans /etc/udev/rules.d avec la règle SUBSYSTEM=="gpio", GROUP="gpio", MODE="0660" la donne au groupe « gpio », que vous rejoignez ensuite</translation>
    </message>
    <message id="a number from 0 to %1 or OFF">
        <source></source>
        <translation>un nombre de 0 à %1 ou OFF</translation>
    </message>
    <message id="a whole number from -2147483648 to 2147483647">
        <source></source>
        <translation>un nombre entier de -2147483648 à 2147483647</translation>
    </message>
    <message id="a whole number from 0 to 65535">
        <source></source>
        <translation>un nombre entier de 0 à 65535</translation>
    </message>
    <message id="a wire leads to &quot;%1&quot;, expected &quot;in&quot;">
        <source></source>
        <translation>un fil mène à « %1 » ; « in » était attendu</translation>
    </message>
    <message id="an input">
        <source></source>
        <translation>une entrée</translation>
    </message>
    <message id="an output">
        <source></source>
        <translation>une sortie</translation>
    </message>
    <message id="another program or driver">
        <source></source>
        <translation>un autre programme ou pilote</translation>
    </message>
    <message id="%1 is busy: %2 holds it; end that, and the bench goes on">
        <source></source>
        <translation>%1 est occupée, tenue par %2 ; terminez-le, et le banc continue</translation>
    </message>
    <message id="cannot be read: %1">
        <source></source>
        <translation>lecture impossible : %1</translation>
    </message>
    <message id="channel &quot;%1&quot; is an input and cannot be written">
        <source></source>
        <translation>la voie « %1 » est une entrée et ne peut pas être commandée</translation>
    </message>
    <message id="channel &quot;%1&quot; is set twice">
        <source></source>
        <translation>la voie « %1 » est donnée deux fois</translation>
    </message>
    <message id="channel &quot;%1&quot;: &quot;direction&quot; is &quot;out&quot;, expected &quot;link&quot; to name an output line, &quot;%2&quot; is an input">
        <source></source>
        <translation>voie « %1 » : « direction » vaut « out », « link » devrait nommer une ligne de sortie, « %2 » est une entrée</translation>
    </message>
    <message id="channel &quot;%1&quot;: &quot;type&quot; is &quot;%2&quot;, but &quot;%3&quot; is a line of a GPIO chip and digital, expected &quot;digitalInput&quot; or &quot;digitalOutput&quot;">
        <source></source>
        <translation>voie « %1 » : « type » vaut « %2 », mais « %3 » est une ligne d’une puce GPIO, donc numérique ; « digitalInput » ou « digitalOutput » était attendu</translation>
    </message>
    <message id="channel &quot;%1&quot;: expected &quot;link&quot; to name a line of the device, found &quot;%2&quot;">
        <source></source>
        <translation>voie « %1 » : « link » devrait nommer une ligne de l’appareil, « %2 » a été trouvé</translation>
    </message>
    <message id="channel &quot;%1&quot;: expected %2, found &quot;%3&quot;">
        <source></source>
        <translation>voie « %1 » : attendu %2, trouvé « %3 »</translation>
    </message>
    <message id="channel &quot;%1&quot;: expected the &quot;direction&quot; &quot;%2&quot; of a channel of the type &quot;%3&quot;, found &quot;%4&quot;">
        <source></source>
        <translation>voie « %1 » : la « direction » « %2 » d’une voie du type « %3 » était attendue, « %4 » a été trouvé</translation>
    </message>
    <message id="expected &quot;%1&quot;">
        <source></source>
        <translation>attendu : « %1 »</translation>
    </message>
    <message id="expected &quot;%1&quot; once">
        <source></source>
        <translation>« %1 » était attendu une seule fois</translation>
    </message>
    <message id="expected &quot;expect CHANNEL=VALUE [within MS]&quot;">
        <source></source>
        <translation>attendu : « expect CHANNEL=VALUE [within MS] »</translation>
    </message>
    <message id="expected &quot;let NAME = CHANNEL&quot;">
        <source></source>
        <translation>attendu : « let NAME = CHANNEL »</translation>
    </message>
    <message id="expected &quot;repeat N&quot;, N from 1 to %1">
        <source></source>
        <translation>attendu : « repeat N », N de 1 à %1</translation>
    </message>
    <message id="expected %1 within %2 ms, found %3">
        <source></source>
        <translation>attendu %1 en %2 ms, trouvé %3</translation>
    </message>
    <message id="expected %1, found %2">
        <source></source>
        <translation>attendu %1, trouvé %2</translation>
    </message>
    <message id="expected CHANNEL=VALUE, found &quot;%1&quot;">
        <source></source>
        <translation>attendu CHANNEL=VALUE, trouvé « %1 »</translation>
    </message>
    <message id="expected JSON, found %1">
        <source></source>
        <translation>attendu du JSON, trouvé %1</translation>
    </message>
    <message id="expected JSON, found a NUL byte">
        <source></source>
        <translation>attendu du JSON, trouvé un octet nul</translation>
    </message>
    <message id="expected NAME=VALUE, found &quot;%1&quot;">
        <source></source>
        <translation>attendu NAME=VALUE, trouvé « %1 »</translation>
    </message>
    <message id="expected a block of at most %1 characters">
        <source></source>
        <translation>un bloc de %1 caractères au plus était attendu</translation>
    </message>
    <message id="expected a broker: --broker URL, or the variable APPVANTOR_BROKER">
        <source></source>
        <translation>un serveur MQTT était attendu : --broker URL, ou la variable APPVANTOR_BROKER</translation>
    </message>
    <message id="expected a closing %1">
        <source></source>
        <translation>il manque un %1 fermant</translation>
    </message>
    <message id="expected a closing bracket">
        <source></source>
        <translation>il manque une parenthèse fermante</translation>
    </message>
    <message id="expected a file, found a folder">
        <source></source>
        <translation>attendu un fichier, trouvé un dossier</translation>
    </message>
    <message id="expected a line of its own, &quot;%1&quot; is taken">
        <source></source>
        <translation>une ligne à part était attendue, « %1 » est prise</translation>
    </message>
    <message id="expected a list, found %1">
        <source></source>
        <translation>attendu une liste, trouvé %1</translation>
    </message>
    <message id="expected a name of its own, &quot;%1&quot; is taken">
        <source></source>
        <translation>un nom à part était attendu, « %1 » est pris</translation>
    </message>
    <message id="expected a text, found %1">
        <source></source>
        <translation>attendu un texte, trouvé %1</translation>
    </message>
    <message id="expected a uuid in braces, found &quot;%1&quot;">
        <source></source>
        <translation>attendu un uuid entre accolades, trouvé « %1 »</translation>
    </message>
    <message id="expected a whole number from %1 to %2, found %3">
        <source></source>
        <translation>attendu un nombre entier de %1 à %2, trouvé %3</translation>
    </message>
    <message id="expected an identifier of its own, &quot;%1&quot; is taken">
        <source></source>
        <translation>un identifiant à part était attendu, « %1 » est pris</translation>
    </message>
    <message id="expected an object">
        <source></source>
        <translation>un objet était attendu</translation>
    </message>
    <message id="expected an object, found %1">
        <source></source>
        <translation>attendu un objet, trouvé %1</translation>
    </message>
    <message id="expected at least &quot;low&quot;, %1">
        <source></source>
        <translation>au moins « low », %1, était attendu</translation>
    </message>
    <message id="expected at least one line">
        <source></source>
        <translation>au moins une ligne était attendue</translation>
    </message>
    <message id="expected at least one tool">
        <source></source>
        <translation>au moins un outil était attendu</translation>
    </message>
    <message id="expected at most %1 bytes">
        <source></source>
        <translation>%1 octets au plus étaient attendus</translation>
    </message>
    <message id="expected blocks at most %1 deep">
        <source></source>
        <translation>%1 blocs imbriqués au plus étaient attendus</translation>
    </message>
    <message id="expected milliseconds from 0 to %1, found &quot;%2&quot;">
        <source></source>
        <translation>attendu des millisecondes de 0 à %1, trouvé « %2 »</translation>
    </message>
    <message id="expected mqtt://HOST[:PORT]/[RIG] or mqtts://…, found &quot;%1&quot;">
        <source></source>
        <translation>attendu mqtt://HOST[:PORT]/[RIG] ou mqtts://…, trouvé « %1 »</translation>
    </message>
    <message id="expected no user in a broker's address: user and password come from a file or from the environment">
        <source></source>
        <translation>l’adresse d’un serveur MQTT ne devrait pas nommer d’utilisateur : utilisateur et mot de passe viennent d’un fichier ou de l’environnement</translation>
    </message>
    <message id="expected nothing after &quot;%1&quot;">
        <source></source>
        <translation>rien n’était attendu après « %1 »</translation>
    </message>
    <message id="expected nothing after &quot;end&quot;">
        <source></source>
        <translation>rien n’était attendu après « end »</translation>
    </message>
    <message id="expected on %1 only">
        <source></source>
        <translation>attendu pour %1 seulement</translation>
    </message>
    <message id="expected on an analogue input only">
        <source></source>
        <translation>attendu pour une entrée analogique seulement</translation>
    </message>
    <message id="expected one name of a rig behind the broker, found &quot;%1&quot;">
        <source></source>
        <translation>attendu un seul nom de banc après le serveur MQTT, trouvé « %1 »</translation>
    </message>
    <message id="expected one of &quot;%1&quot;, found %2">
        <source></source>
        <translation>attendu une valeur parmi "%1", trouvé %2</translation>
    </message>
    <message id="expected the chip of line %1">
        <source></source>
        <translation>la puce de la ligne %1 était attendue</translation>
    </message>
    <message id="expected the name of a line, found &quot;%1&quot;">
        <source></source>
        <translation>attendu le nom d’une ligne, trouvé « %1 »</translation>
    </message>
    <message id="expected the name of a rig">
        <source></source>
        <translation>le nom d’un banc était attendu</translation>
    </message>
    <message id="expected the name of a rig: --rig NAME, or mqtt://HOST/NAME">
        <source></source>
        <translation>le nom d’un banc était attendu : --rig NAME, ou mqtt://HOST/NAME</translation>
    </message>
    <message id="expected the number of an order, %1, found &quot;%2&quot;">
        <source></source>
        <translation>attendu le numéro d’un ordre, %1, trouvé « %2 »</translation>
    </message>
    <message id="expected true or false, found %1">
        <source></source>
        <translation>attendu true ou false, trouvé %1</translation>
    </message>
    <message id="interface identifier &quot;%1&quot;, expected &quot;%2&quot;">
        <source></source>
        <translation>identifiant d’interface « %1 », « %2 » était attendu</translation>
    </message>
    <message id="interrupted by a signal">
        <source></source>
        <translation>interrompu par un signal</translation>
    </message>
    <message id="it cannot be used">
        <source></source>
        <translation>il est inutilisable</translation>
    </message>
    <message id="it does not answer">
        <source></source>
        <translation>pas de réponse</translation>
    </message>
    <message id="it does not take &quot;%1&quot;: %2">
        <source></source>
        <translation>il ne prend pas « %1 » : %2</translation>
    </message>
    <message id="it ended the connection: %1">
        <source></source>
        <translation>il a mis fin à la connexion : %1</translation>
    </message>
    <message id="it gave no instance">
        <source></source>
        <translation>il n’a pas donné d’instance</translation>
    </message>
    <message id="it has no function &quot;qt_plugin_instance&quot;">
        <source></source>
        <translation>il n’a pas de fonction « qt_plugin_instance »</translation>
    </message>
    <message id="it passes nothing on: %1">
        <source></source>
        <translation>il ne transmet rien : %1</translation>
    </message>
    <message id="it refuses: %1">
        <source></source>
        <translation>refus : %1</translation>
    </message>
    <message id="its certificate is refused: %1">
        <source></source>
        <translation>son certificat est refusé : %1</translation>
    </message>
    <message id="its instance could not be made: %1">
        <source></source>
        <translation>son instance n’a pas pu être faite : %1</translation>
    </message>
    <message id="its instance could not be made: it threw something unknown">
        <source></source>
        <translation>son instance n’a pas pu être faite : exception inconnue</translation>
    </message>
    <message id="its instance is no plugin of this host">
        <source></source>
        <translation>son instance n’est pas un plugin de cet hôte</translation>
    </message>
    <message id="join its group with &quot;sudo usermod -aG %1 $USER&quot;, and log in again">
        <source></source>
        <translation>rejoignez son groupe par « sudo usermod -aG %1 $USER », puis reconnectez-vous</translation>
    </message>
    <message id="line &quot;%1&quot; blinks no more: %2">
        <source></source>
        <translation>la ligne « %1 » ne clignote plus : %2</translation>
    </message>
    <message id="line &quot;%1&quot; is not known to the rig &quot;%2&quot;">
        <source></source>
        <translation>le banc « %2 » ne connaît pas le niveau de la ligne « %1 »</translation>
    </message>
    <message id="line &quot;%1&quot; of the chip &quot;%2&quot; is used already, expected another">
        <source></source>
        <translation>la ligne « %1 » de la puce « %2 » est déjà utilisée ; une autre était attendue</translation>
    </message>
    <message id="line &quot;%1&quot; of the chip &quot;%2&quot;: a GPIO line is digital, expected &quot;digital&quot;">
        <source></source>
        <translation>ligne « %1 » de la puce « %2 » : une ligne GPIO est numérique ; « digital » était attendu</translation>
    </message>
    <message id="line &quot;%1&quot;: %2">
        <source></source>
        <translation>ligne « %1 » : %2</translation>
    </message>
    <message id="line &quot;%1&quot;: %2 is &quot;%3&quot; already; expected another">
        <source></source>
        <translation>ligne « %1 » : %2 est déjà « %3 » ; une autre était attendue</translation>
    </message>
    <message id="line &quot;%1&quot;: expected a level from 0 to %2 of the rig &quot;%3&quot;, found %4">
        <source></source>
        <translation>ligne « %1 » : attendu du banc « %3 » un niveau de 0 à %2, trouvé %4</translation>
    </message>
    <message id="line &quot;%1&quot;: no GPIO chip has a line &quot;%2&quot;; &quot;appvantor discover&quot; lists those of this machine">
        <source></source>
        <translation>ligne « %1 » : aucune puce GPIO n’a de ligne « %2 » ; « appvantor discover » donne celles de cette machine</translation>
    </message>
    <message id="line &quot;%1&quot;: the chip %2 has no line &quot;%3&quot;; &quot;appvantor discover&quot; lists its lines">
        <source></source>
        <translation>ligne « %1 » : la puce %2 n’a pas de ligne « %3 » ; « appvantor discover » donne ses lignes</translation>
    </message>
    <message id="line &quot;%1&quot;: the rig &quot;%2&quot; has no line &quot;%3&quot;">
        <source></source>
        <translation>ligne « %1 » : le banc « %2 » n’a pas de ligne « %3 »</translation>
    </message>
    <message id="line &quot;%1&quot;: there is more than one &quot;%2&quot;: %3; &quot;chip&quot; and &quot;line&quot; tell which is meant, by the name of the chip and the offset">
        <source></source>
        <translation>ligne « %1 » : il y a plus d’une « %2 » : %3 ; « chip » et « line » disent laquelle, par le nom de la puce et le rang</translation>
    </message>
    <message id="line %1 of %2">
        <source></source>
        <translation>ligne %1 de %2</translation>
    </message>
    <message id="malformed argument &quot;%1&quot;: &quot;%2&quot;, expected a whole number from 0 to %3">
        <source></source>
        <translation>argument « %1 » mal formé : « %2 », un nombre entier de 0 à %3 était attendu</translation>
    </message>
    <message id="missing argument &quot;%1&quot;">
        <source></source>
        <translation>l’argument « %1 » manque</translation>
    </message>
    <message id="nested too deeply, expected at most %1 levels">
        <source></source>
        <translation>trop de niveaux imbriqués, %1 au plus étaient attendus</translation>
    </message>
    <message id="no such plugin library">
        <source></source>
        <translation>cette bibliothèque de plugin n’existe pas</translation>
    </message>
    <message id="nobody reads this pipe">
        <source></source>
        <translation>personne ne lit ce tube</translation>
    </message>
    <message id="not a plugin for this version of Qt (%1)">
        <source></source>
        <translation>pas un plugin pour cette version de Qt (%1)</translation>
    </message>
    <message id="nothing">
        <source></source>
        <translation>rien</translation>
    </message>
    <message id="nothing more">
        <source></source>
        <translation>rien de plus</translation>
    </message>
    <message id="of which there is none yet">
        <source></source>
        <translation>dont il n’y a aucun pour l’instant</translation>
    </message>
    <message id="parameter &quot;%1&quot; is given twice">
        <source></source>
        <translation>le paramètre « %1 » est donné deux fois</translation>
    </message>
    <message id="parameter &quot;%1&quot; of command &quot;%2&quot; cannot hold &quot;%3&quot;; expected %4">
        <source></source>
        <translation>le paramètre « %1 » de la commande « %2 » ne peut pas contenir « %3 » ; attendu : %4</translation>
    </message>
    <message id="parameter &quot;%1&quot;: %2">
        <source></source>
        <translation>paramètre « %1 » : %2</translation>
    </message>
    <message id="standard input">
        <source></source>
        <translation>entrée standard</translation>
    </message>
    <message id="standard output">
        <source></source>
        <translation>sortie standard</translation>
    </message>
    <message id="standard output cannot be written to">
        <source></source>
        <translation>la sortie standard ne peut pas être écrite</translation>
    </message>
    <message id="the board refuses &quot;%1&quot;">
        <source></source>
        <translation>la carte refuse « %1 »</translation>
    </message>
    <message id="the board refuses &quot;%1&quot; of channel &quot;%2&quot;">
        <source></source>
        <translation>la carte refuse « %1 » pour la voie « %2 »</translation>
    </message>
    <message id="the chip %1 cannot be opened: %2; &quot;appvantor discover&quot; lists those of this machine">
        <source></source>
        <translation>la puce %1 ne peut pas être ouverte : %2 ; « appvantor discover » donne celles de cette machine</translation>
    </message>
    <message id="the entry &quot;%1&quot; stands here for the second time, expected it once">
        <source></source>
        <translation>l’entrée « %1 » figure ici pour la deuxième fois, elle était attendue une seule fois</translation>
    </message>
    <message id="the plugin made no command &quot;%1&quot;">
        <source></source>
        <translation>le plugin n’a pas fait de commande « %1 »</translation>
    </message>
    <message id="the plugin made no instance that this host can use">
        <source></source>
        <translation>le plugin n’a pas fait d’instance utilisable par cet hôte</translation>
    </message>
    <message id="the rig &quot;%1&quot; does not answer">
        <source></source>
        <translation>le banc « %1 » ne répond pas</translation>
    </message>
    <message id="the rig &quot;%1&quot; does not say why">
        <source></source>
        <translation>le banc « %1 » ne dit pas pourquoi</translation>
    </message>
    <message id="the rig &quot;%1&quot; has begun anew">
        <source></source>
        <translation>le banc « %1 » a redémarré</translation>
    </message>
    <message id="the rig &quot;%1&quot; is %2">
        <source></source>
        <translation>le banc « %1 » est %2</translation>
    </message>
    <message id="the rig ends">
        <source></source>
        <translation>le banc s’arrête</translation>
    </message>
    <message id="the system grants no real-time priority: %1">
        <source></source>
        <translation>le système n’accorde pas de priorité temps réel : %1</translation>
    </message>
    <message id="the tool has no channel &quot;%1&quot;%2">
        <source></source>
        <translation>l’outil n’a pas de voie « %1 »%2</translation>
    </message>
    <message id="the trace ends here: %1">
        <source></source>
        <translation>la trace s’arrête ici : %1</translation>
    </message>
    <message id="the trace is lost: the file was removed meanwhile">
        <source></source>
        <translation>la trace est perdue : le fichier a été supprimé entre-temps</translation>
    </message>
    <message id="the wires of &quot;%1&quot; form a loop">
        <source></source>
        <translation>les fils de « %1 » forment une boucle</translation>
    </message>
    <message id="there is no GPIO chip &quot;%1&quot;; &quot;appvantor discover&quot; lists those of this machine">
        <source></source>
        <translation>il n’y a pas de puce GPIO « %1 » ; « appvantor discover » donne celles de cette machine</translation>
    </message>
    <message id="there is no rig &quot;%1&quot; on %2">
        <source></source>
        <translation>il n’y a pas de banc « %1 » sur %2</translation>
    </message>
    <message id="this machine has no GPIO chip: there is no /dev/gpiochip0 or other; plug one in or load its driver">
        <source></source>
        <translation>cette machine n’a pas de puce GPIO : il n’y a ni /dev/gpiochip0 ni autre ; branchez-en une ou chargez son pilote</translation>
    </message>
    <message id="unknown channel &quot;%1&quot;">
        <source></source>
        <translation>voie « %1 » inconnue</translation>
    </message>
    <message id="unknown command &quot;%1&quot;%2">
        <source></source>
        <translation>commande « %1 » inconnue%2</translation>
    </message>
    <message id="unknown command &quot;%1&quot;; the tool has: %2">
        <source></source>
        <translation>commande « %1 » inconnue ; l’outil a : %2</translation>
    </message>
    <message id="unknown entry, expected one of: %1">
        <source></source>
        <translation>entrée inconnue, attendu une de : %1</translation>
    </message>
    <message id="unknown instruction &quot;%1&quot;">
        <source></source>
        <translation>instruction « %1 » inconnue</translation>
    </message>
    <message id="unknown parameter &quot;%1&quot; of command &quot;%2&quot;; it takes: %3">
        <source></source>
        <translation>paramètre « %1 » inconnu de la commande « %2 » ; elle prend : %3</translation>
    </message>
    <message id="unknown target &quot;%1&quot; of &quot;%2&quot;">
        <source></source>
        <translation>cible « %1 » inconnue de « %2 »</translation>
    </message>
    <message id="No such file or directory">
        <source></source>
        <translation>fichier ou dossier inexistant</translation>
    </message>
    <message id="Permission denied">
        <source></source>
        <translation>permission refusée</translation>
    </message>
    <message id="Is a directory">
        <source></source>
        <translation>c’est un dossier</translation>
    </message>
    <message id="Not a directory">
        <source></source>
        <translation>ce n’est pas un dossier</translation>
    </message>
    <message id="Read-only file system">
        <source></source>
        <translation>système de fichiers en lecture seule</translation>
    </message>
    <message id="No space left on device">
        <source></source>
        <translation>plus de place sur le support</translation>
    </message>
    <message id="File name too long">
        <source></source>
        <translation>nom de fichier trop long</translation>
    </message>
    <message id="Broken pipe">
        <source></source>
        <translation>tube rompu</translation>
    </message>
    <message id="Connection refused">
        <source></source>
        <translation>connexion refusée</translation>
    </message>
    <message id="Connection timed out">
        <source></source>
        <translation>délai de connexion dépassé</translation>
    </message>
    <message id="Network is unreachable">
        <source></source>
        <translation>réseau injoignable</translation>
    </message>
    <message id="No route to host">
        <source></source>
        <translation>pas de route vers l’hôte</translation>
    </message>
    <message id="Host not found">
        <source></source>
        <translation>hôte introuvable</translation>
    </message>
    <message id="Operation not permitted">
        <source></source>
        <translation>opération non permise</translation>
    </message>
    <message id="input/output error">
        <source></source>
        <translation>erreur d’entrée-sortie</translation>
    </message>
    <message id="invalid argument">
        <source></source>
        <translation>argument non valable</translation>
    </message>
    <message id="no such device">
        <source></source>
        <translation>appareil inexistant</translation>
    </message>
    <message id="inappropriate ioctl for device">
        <source></source>
        <translation>ce n’est pas une puce GPIO</translation>
    </message>
    <message id="no such file or directory">
        <source></source>
        <translation>fichier ou dossier inexistant</translation>
    </message>
    <message id="operation not supported">
        <source></source>
        <translation>opération non prise en charge</translation>
    </message>
    <message id="Simulated board">
        <source></source>
        <translation>Carte simulée</translation>
    </message>
    <message id="GPIO lines">
        <source></source>
        <translation>Lignes GPIO</translation>
    </message>
    <message id="offline">
        <source></source>
        <translation>hors service</translation>
    </message>
    <message id="lost">
        <source></source>
        <translation>perdu</translation>
    </message>
</context>
</TS>
